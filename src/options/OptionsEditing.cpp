#include "options/OptionsEditing.h"

#include "accounts/AccountStore.h"
#include "context/AppContext.h"
#include "context/PageCalls.h"
#include "messages/Sorting.h"
#include "options/ClientChoice.h"
#include "options/MenuColours.h"
#include "options/SaveOptions.h"
#include "platform/Controls.h"
#include "platform/MainView.h"

#include <QHash>

namespace velmora {

namespace {

const char* const NodeTexts[6] = {"StartUp",      "Auto Check",    "Defaults",
                                  "Menu Colours", "Miscellaneous", "About"};

struct CheckKey {
    QLatin1String control;
    int Options::*field;
};

const CheckKey Checks[] = {
    {ctl::chkRunStartUp, &Options::RunStartUp},
    {ctl::chkEmailCheckStartUp, &Options::EmailCheckStartUp},
    {ctl::chkMinimizeStartUp, &Options::MinimizeStartUp},
    {ctl::chkUseInterval, &Options::UseInterval},
    {ctl::chkNoCheck, &Options::NoCheck},
    {ctl::chkShowEmailMsgBox, &Options::ShowEmailMsgBox},
    {ctl::chkPlaySound, &Options::PlaySound},
    {ctl::chkShowNewOnly, &Options::ShowNewOnly},
    {ctl::chkRestoreColWidth, &Options::RestoreColWidth},
    {ctl::chkButtonStyle, &Options::ButtonStyle},
    {ctl::chkFromToolTips, &Options::FromToolTips},
    {ctl::chkToToolTips, &Options::ToToolTips},
    {ctl::chkSubjectToolTips, &Options::SubjectToolTips},
    {ctl::chkMessageSort, &Options::MessageSort},
    {ctl::chkCloseButton, &Options::CloseButton},
    {ctl::chkQuickCheck, &Options::QuickCheck},
    {ctl::chkDeleteConfirmation, &Options::DeleteConfirmation},
    {ctl::chkSuppressConnectErrors, &Options::SuppressConnectErrors},
    {ctl::chkSuppressRetrieveErrors, &Options::SuppressRetrieveErrors},
};

const std::pair<QLatin1String, const char*> CheckCaptions[] = {
    {ctl::chkRunStartUp, "Run at StartUp"},
    {ctl::chkEmailCheckStartUp, "Check for Email at StartUp"},
    {ctl::chkMinimizeStartUp, "Minimize Velmora at StartUp"},
    {ctl::chkUseInterval, "Enable Auto Check Timing Interval"},
    {ctl::chkNoCheck, "Do Not Check between"},
    {ctl::chkShowEmailMsgBox, "Show Auto Check Message after Checking for Email"},
    {ctl::chkPlaySound, "Sound On"},
    {ctl::chkQuickCheck, "Allow Quick Checking"},
    {ctl::chkDeleteConfirmation, "Delete Messages Confirmation"},
    {ctl::chkCloseButton, "X Button Minimizes instead of Closing Program"},
    {ctl::chkSuppressConnectErrors, "Suppress Connection Error Messages"},
    {ctl::chkSuppressRetrieveErrors, "Suppress Retrieve Error Messages"},
    {ctl::chkShowNewOnly, "Show only New Message Count in the System Tray"},
    {ctl::chkRestoreColWidth, "Always Restore Default Email Message Column Width at StartUp"},
    {ctl::chkButtonStyle, "Raised Buttons"},
    {ctl::chkFromToolTips, "From"},
    {ctl::chkToToolTips, "To"},
    {ctl::chkSubjectToolTips, "Subject"},
    {ctl::chkMessageSort, "Use Message Sorting by Columns"},
};

// A numeric box: its bounds, and what a blank becomes.
struct NumberBox {
    QLatin1String control;
    int Options::*field;
    int minimum;
    int maximum;
    int blank;
};

const NumberBox Numbers[] = {
    {ctl::txtStartUpDelay, &Options::StartUpDelay, 0, 59, 0},
    {ctl::txtMsgBoxTime, &Options::MsgBoxTime, 0, 59, 0},
    {ctl::txtConnectTimeOut, &Options::ConnectTimeOut, 1, 120, 1},
    {ctl::txtHours, &Options::Hours, 0, 12, 0},
};

// Option arrays that store their index as it stands.
struct OptionKey {
    QLatin1String array;
    int Options::*field;
    int count;
};

const OptionKey OptionArrays[] = {
    {ctl::optShowEmail, &Options::ShowEmail, 3},
    {ctl::opt3DTheme, &Options::DTheme, 7},
    {ctl::optApplyStyle, &Options::ApplyStyle, 4},
    {ctl::optSortColumn, &Options::SortColumn, 6},
};

const QStringList& PageKeys() {
    // The page's keys in the order of the record's table.
    static const QStringList keys = Options::saveOrder();
    return keys;
}

// Guards the load, whose own settings must not run the dirty check.
struct Loading {
    explicit Loading(AccountStore& acc) : acc(acc), was(acc.AcntPageLoading) {
        acc.AcntPageLoading = true;
    }
    ~Loading() { acc.AcntPageLoading = was; }
    AccountStore& acc;
    bool was;
};

int Number(const QString& text, bool* ok) {
    return text.trimmed().toInt(ok);
}

void SetOption(MainView& v, const QString& array, int index, int count) {
    // A value stored out of range selects nothing new.
    if (index >= 0 && index < count)
        v.setOptionIndex(array, index);
}

// The interval's minute spin follows the hours, so the interval is never
// zero nor more than twelve hours.
void FitMinutesToHours(AppContext& ctx, int hours) {
    MainView& v = *ctx.view;
    if (hours == 0) {
        v.setRange(ctl::txtMinutes, 1, 59);
        if (v.text(ctl::txtMinutes).trimmed() == QLatin1String("0"))
            v.setText(ctl::txtMinutes, QStringLiteral("1"));
    } else if (hours >= 12) {
        v.setRange(ctl::txtMinutes, 0, 0);
        v.setText(ctl::txtMinutes, QStringLiteral("0"));
    } else {
        v.setRange(ctl::txtMinutes, 0, 59);
    }
}

// Corrects a numeric box in place: blank and too large by the table, too
// small to the bottom, and what is no number back to the saved value.
void CorrectNumber(AppContext& ctx, const NumberBox& box) {
    MainView& v = *ctx.view;
    const QString text = v.text(box.control);
    int value = 0;
    if (text.trimmed().isEmpty()) {
        value = box.blank;
    } else {
        bool ok = false;
        value = Number(text, &ok);
        if (!ok)
            value = ctx.options.*box.field;
        value = std::clamp(value, box.minimum, box.maximum);
    }
    if (QString::number(value) != text)
        v.setText(box.control, QString::number(value));
    if (box.control == ctl::txtHours)
        FitMinutesToHours(ctx, value);
}

void CorrectMinutes(AppContext& ctx) {
    MainView& v = *ctx.view;
    bool ok = false;
    const int hours = Number(v.text(ctl::txtHours), &ok);
    const QString text = v.text(ctl::txtMinutes);
    QString wanted = text;
    if (ok && hours >= 12) {
        wanted = QStringLiteral("0");
    } else if (text.trimmed().isEmpty()) {
        wanted = ok && hours == 0 ? QStringLiteral("1") : QStringLiteral("0");
    } else {
        bool number = false;
        int minutes = Number(text, &number);
        if (!number)
            minutes = ctx.options.Minutes;
        // 0 with no hours stays: only a change of the hours corrects it.
        wanted = QString::number(std::clamp(minutes, 0, 59));
    }
    if (wanted != text)
        v.setText(ctl::txtMinutes, wanted);
}

// A quiet period spin: items 0 and 1 the hours of box 0 and 1, items 2 and 3
// their minutes.
void NoCheckSpinChanged(AppContext& ctx, int item) {
    MainView& v = *ctx.view;
    const QString spin = Element(ctl::updNoCheck, item);
    const QString box = Element(ctl::txtNoCheckTime, item % 2);
    const bool hours = item < 2;
    bool ok = false;
    int value = Number(v.text(spin), &ok);
    QString time = v.text(box);
    if (time.size() != 5)
        time = QStringLiteral("00:00");
    if (!ok)
        value = time.mid(hours ? 0 : 3, 2).toInt();
    value = std::clamp(value, 0, hours ? 23 : 59);
    const QString part = QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
    time.replace(hours ? 0 : 3, 2, part);
    v.setText(spin, QString::number(value));
    v.setText(box, time);
}

void ShowNoCheckSpins(AppContext& ctx) {
    MainView& v = *ctx.view;
    for (int item = 0; item < 4; ++item) {
        const QString time = v.text(Element(ctl::txtNoCheckTime, item % 2));
        v.setText(Element(ctl::updNoCheck, item),
                  QString::number(time.mid(item < 2 ? 0 : 3, 2).toInt()));
    }
}

void SetDirtyButtons(AppContext& ctx, bool dirty) {
    MainView& v = *ctx.view;
    v.setEnabled(Element(ctl::tbrButtons, ctl::SaveOptions), dirty);
    v.setEnabled(Element(ctl::tbrButtons, ctl::CancelOptions), dirty);
    v.setEnabled(ctl::tbrMainButtons, !dirty);
}

void Explain(MainView& v, const QString& label, bool on, const QString& whenOn,
             const QString& whenOff) {
    v.setCaption(label, on ? whenOn : whenOff);
}

} // namespace

QStringList OptionsContainers(const QString& control) {
    const QString page = Element(ctl::fraMain, 3);
    const QString bar = control.section(QLatin1Char('/'), 0, 0);
    if (bar == Element(ctl::tbrClient, 1) || bar == Element(ctl::tbrSound, 1))
        return {bar, Element(ctl::fraMain, 1)};
    if (control == ctl::TreeView)
        return {page};
    // An array element goes by its array, a button by its toolbar.
    const QString name = control.section(QLatin1Char('('), 0, 0).section(QLatin1Char('/'), 0, 0);
    static const QHash<QString, int> sections = [] {
        QHash<QString, int> h;
        const std::pair<int, QStringList> table[] = {
            {1,
             {ctl::chkRunStartUp, ctl::chkEmailCheckStartUp, ctl::txtStartUpDelay,
              ctl::chkMinimizeStartUp}},
            {2,
             {ctl::chkUseInterval, ctl::txtHours, ctl::txtMinutes, ctl::chkNoCheck,
              ctl::txtNoCheckTime, ctl::updNoCheck, ctl::chkShowEmailMsgBox, ctl::optShowEmail,
              ctl::txtMsgBoxTime}},
            {3,
             {ctl::txtDefaultClient, ctl::tbrClient, ctl::optRunSize, ctl::txtDefaultSound,
              ctl::tbrSound, ctl::chkPlaySound, ctl::txtConnectTimeOut, ctl::chkQuickCheck,
              ctl::chkDeleteConfirmation, ctl::chkCloseButton, ctl::chkSuppressConnectErrors,
              ctl::chkSuppressRetrieveErrors}},
            {4,
             {ctl::opt3DTheme, ctl::lbl3DTopColour, ctl::lbl3DMiddleColour,
              ctl::lbl3DBottomColour}},
            {5,
             {ctl::chkShowNewOnly, ctl::chkRestoreColWidth, ctl::chkButtonStyle, ctl::optApplyStyle,
              ctl::chkFromToolTips, ctl::chkToToolTips, ctl::chkSubjectToolTips, ctl::tbrOptMisc,
              ctl::chkMessageSort, ctl::optSortColumn, ctl::optSortOrder}},
        };
        for (const auto& [node, names] : table) {
            for (const QString& n : names)
                h.insert(n, node);
        }
        return h;
    }();
    const int node = sections.value(name);
    if (node == 0)
        return {};
    QStringList chain;
    if (control.contains(QLatin1Char('/')))
        chain.append(bar);
    if (name == ctl::optApplyStyle)
        chain.append(ctl::fraApplyStyle);
    if (name == ctl::optSortColumn || name == ctl::optSortOrder)
        chain.append(ctl::fraSort);
    chain << Element(ctl::fraOptions, node) << page;
    return chain;
}

void ArrangeOptionsPage(AppContext& ctx) {
    MainView& v = *ctx.view;
    QStringList nodes;
    for (const char* text : NodeTexts)
        nodes.append(QString::fromLatin1(text));
    v.setItems(ctl::TreeView, nodes);
    for (const auto& [control, caption] : CheckCaptions)
        v.setCaption(control, QString::fromLatin1(caption).replace("Velmora", ctx.shell.AppTitle));
    for (const NumberBox& box : Numbers)
        v.setRange(box.control, box.minimum, box.maximum);
    v.setRange(ctl::txtMinutes, 0, 59);
    for (int item = 0; item < 4; ++item)
        v.setRange(Element(ctl::updNoCheck, item), 0, item < 2 ? 23 : 59);
    const std::pair<QLatin1String, QStringList> captions[] = {
        {ctl::optShowEmail,
         {"Only when New Messages are found", "When any Messages are found",
          "Always Show Auto Check Message Box"}},
        {ctl::optRunSize, {"Normal", "Maximized"}},
        {ctl::opt3DTheme, ThemeCaptions()},
        {ctl::optApplyStyle, {"Lower", "Upper", "Intermediate", "All"}},
        {ctl::optSortColumn, {"Last Used", "From", "To", "Subject", "Date", "Size"}},
        {ctl::optSortOrder, {"Ascending", "Descending"}},
    };
    for (const auto& [array, texts] : captions) {
        for (int i = 0; i < texts.size(); ++i)
            v.setCaption(Element(array, i), texts[i]);
    }
    for (const ToolbarButton& b : OptionPageButtons()) {
        const QString button = Button(b.toolbar, b.key);
        v.setCaption(button, b.caption);
        v.setToolTip(button, b.tip);
        if (b.toolbar != ctl::tbrOptMisc)
            v.setImage(button, b.key);
    }
    v.setToolTip(ctl::lbl3DTopColour, QStringLiteral("Change Top Colour"));
    v.setToolTip(ctl::lbl3DMiddleColour, QStringLiteral("Change Middle Colour"));
    v.setToolTip(ctl::lbl3DBottomColour, QStringLiteral("Change Bottom Colour"));
    v.setCaption(Element(ctl::lblMenuColours, 6), QStringLiteral("User Colours Available"));
    v.setCaption(Element(ctl::lblInterval, 0), QStringLiteral("Check for Email every"));
    v.setCaption(Element(ctl::lblInterval, 1), QStringLiteral("hours and"));
    v.setCaption(Element(ctl::lblInterval, 2), QStringLiteral("minutes."));
    v.setVisible(ctl::picClientIcon, false);
    v.setVisible(ctl::txtMenuStyleFile, false);
    v.setVisible(ctl::txtButtonStyle, false);
    ShowOptionsPage(ctx, ctx.shell.OptionsPage);
}

void StartOptionsPage(AppContext& ctx) {
    // A client is any program or desktop entry, not only what the store's
    // own check takes.
    AccountStore& acc = ctx.accounts;
    for (int n = 1; n <= acc.AcntNum; ++n) {
        acc[n].AcntClientValid = IsValidClient(*ctx.svc.files, acc[n].AcntClient);
        acc[n].AcntSoundValid = IsValidSound(*ctx.svc.files, acc[n].AcntSound);
    }
    ArrangeOptionsPage(ctx);
    WriteMenuStyleFile(ctx);
    LoadOptionsPage(ctx);
    ApplyButtonStyle(ctx);
    RefreshClientIcons(ctx);
}

void LoadOptionsPage(AppContext& ctx) {
    MainView& v = *ctx.view;
    const Options& o = ctx.options;
    {
        Loading loading(ctx.accounts);
        for (const CheckKey& c : Checks)
            v.setChecked(c.control, o.*c.field == 1 ? 1 : 0);
        for (const NumberBox& box : Numbers)
            v.setText(box.control, QString::number(o.*box.field));
        v.setText(ctl::txtMinutes, QString::number(o.Minutes));
        FitMinutesToHours(ctx, o.Hours);
        v.setText(ctl::txtMinutes, QString::number(o.Minutes));
        v.setText(Element(ctl::txtNoCheckTime, 0), o.NoCheckTimeBegin);
        v.setText(Element(ctl::txtNoCheckTime, 1), o.NoCheckTimeEnd);
        ShowNoCheckSpins(ctx);
        v.setText(ctl::txtDefaultClient, o.DefaultClient);
        v.setText(ctl::txtDefaultSound, o.DefaultSound);
        for (const OptionKey& a : OptionArrays)
            SetOption(v, a.array, o.*a.field, a.count);
        v.setOptionIndex(ctl::optRunSize, o.RunSize == 1 ? 0 : 1);
        v.setOptionIndex(ctl::optSortOrder, o.SortOrder == 0 ? 0 : 1);
        v.setColour(ctl::lbl3DTopColour, quint32(o.TopColour) & 0x00FFFFFFu);
        v.setColour(ctl::lbl3DMiddleColour, quint32(o.MiddleColour) & 0x00FFFFFFu);
        v.setColour(ctl::lbl3DBottomColour, quint32(o.BottomColour) & 0x00FFFFFFu);
    }
    OptionsDirtyCheck(ctx);
}

Options WorkingOptions(AppContext& ctx) {
    MainView& v = *ctx.view;
    const Options& record = ctx.options;
    Options w = record;
    for (const CheckKey& c : Checks)
        w.*c.field = v.checked(c.control);
    for (const NumberBox& box : Numbers)
        w.*box.field = v.text(box.control).trimmed().toInt();
    w.Minutes = v.text(ctl::txtMinutes).trimmed().toInt();
    w.NoCheckTimeBegin = v.text(Element(ctl::txtNoCheckTime, 0));
    w.NoCheckTimeEnd = v.text(Element(ctl::txtNoCheckTime, 1));
    w.DefaultClient = v.text(ctl::txtDefaultClient);
    w.DefaultSound = v.text(ctl::txtDefaultSound);
    for (const OptionKey& a : OptionArrays)
        w.*a.field = v.optionIndex(a.array);
    // Any run size but Normal is Maximized, any order but 0 descending: a
    // stored 2 stays 2 until the other button is chosen.
    if (v.optionIndex(ctl::optRunSize) == 0)
        w.RunSize = 1;
    else if (record.RunSize == 1)
        w.RunSize = 3;
    if (v.optionIndex(ctl::optSortOrder) == 0)
        w.SortOrder = 0;
    else if (record.SortOrder == 0)
        w.SortOrder = 1;
    w.TopColour = qint32(v.colour(ctl::lbl3DTopColour));
    w.MiddleColour = qint32(v.colour(ctl::lbl3DMiddleColour));
    w.BottomColour = qint32(v.colour(ctl::lbl3DBottomColour));
    w.ComputeInterval();
    return w;
}

QString FirstDifference(const Options& working, const Options& record) {
    for (const QString& key : PageKeys()) {
        // Texts compare exactly, case and all.
        if (working.valueText(key) != record.valueText(key))
            return key;
    }
    return {};
}

void OptionsDirtyCheck(AppContext& ctx) {
    if (ctx.accounts.AcntPageLoading)
        return;
    const bool dirty = !FirstDifference(WorkingOptions(ctx), ctx.options).isEmpty();
    UpdateOptionTexts(ctx);
    SetDirtyButtons(ctx, dirty);
}

void UpdateOptionTexts(AppContext& ctx) {
    MainView& v = *ctx.view;
    const QString app = ctx.shell.AppTitle;
    const Options w = WorkingOptions(ctx);

    Explain(v, ctl::lblRunStartUp, w.RunStartUp == 1,
            "Start " + app + " automatically when you logon to your computer.",
            "(Off)  Start " + app + " manually from the Start Menu.");
    Explain(v, ctl::lblEmailCheckStartUp, w.EmailCheckStartUp == 1,
            "Automatically check for messages when " + app + " starts.",
            "(Off)  Manually check for messages after starting " + app + ".");
    Explain(v, ctl::lblMinimizeStartUp, w.MinimizeStartUp == 1,
            app + " will start Minimized to the System Tray.",
            "(Off)  " + app + " will start with a Normal Window.");
    Explain(v, ctl::lblUseInterval, w.UseInterval == 1,
            "Set the Timing Interval below to Auto Check for messages in all Enabled Accounts.",
            "(Off)  Do not use an Auto Check Timing Interval. Checking for messages must be "
            "done manually.");

    v.setEnabled(ctl::txtStartUpDelay, w.EmailCheckStartUp == 1);

    const bool interval = w.UseInterval == 1;
    if (!interval) {
        // Off, the boxes show what is saved.
        Loading loading(ctx.accounts);
        v.setText(ctl::txtHours, QString::number(ctx.options.Hours));
        v.setText(ctl::txtMinutes, QString::number(ctx.options.Minutes));
    }
    for (const QString& control :
         {QString(ctl::txtHours), QString(ctl::txtMinutes), Element(ctl::lblInterval, 0),
          Element(ctl::lblInterval, 1), Element(ctl::lblInterval, 2)})
        v.setEnabled(control, interval);

    const bool quiet = w.NoCheck == 1;
    for (int i = 0; i < 2; ++i)
        v.setEnabled(Element(ctl::txtNoCheckTime, i), quiet);
    for (int i = 0; i < 4; ++i)
        v.setEnabled(Element(ctl::updNoCheck, i), quiet);

    const bool message = w.ShowEmailMsgBox == 1;
    for (int i = 0; i < 3; ++i)
        v.setEnabled(Element(ctl::optShowEmail, i), message);
    v.setEnabled(ctl::txtMsgBoxTime, message);

    Files& files = *ctx.svc.files;
    ctx.shell.DefaultClientValid = IsValidClient(files, w.DefaultClient);
    const int c = ctx.accounts.AcntCurrent;
    if (c >= 1 && c <= ctx.accounts.AcntNum)
        ctx.accounts[c].AcntClientValid = IsValidClient(files, ctx.accounts[c].AcntClient);

    if (w.PlaySound != 1) {
        ctx.shell.SoundMaster = false;
        v.setCaption(ctl::mnuTraySounds, QStringLiteral("Soun&ds - Off|#SoundOff"));
        v.setCaption(Element(ctl::lblSoundInfo, 0),
                     QStringLiteral("No Sound will Play for any Accounts."));
        v.setCaption(Element(ctl::lblSoundInfo, 1),
                     QStringLiteral("No Sound will play for these settings since Sound has been "
                                    "turned off.\r\nSee Defaults/Sound On."));
    } else {
        ctx.shell.SoundMaster = true;
        v.setCaption(ctl::mnuTraySounds, QStringLiteral("Soun&ds - On|#SoundOn"));
        ctx.shell.DefaultSoundValid = IsValidSound(files, w.DefaultSound);
        v.setCaption(Element(ctl::lblSoundInfo, 0),
                     ctx.shell.DefaultSoundValid
                         ? QStringLiteral("The Default Sound will Play for all Enabled Accounts.")
                         : QStringLiteral("Sound Controlled by Individual Accounts."));
        v.setCaption(Element(ctl::lblSoundInfo, 1),
                     QStringLiteral("Sound Files will play based on these settings even if the "
                                    "Auto Check Message is not displayed."));
        v.setCaption(Element(ctl::lblSoundInfo, 2), QString());
    }

    v.setCaption(Element(ctl::lblMenuColours, 0),
                 "3D Effect Menu Colours are visible by Right Clicking the " + app +
                     " icon in the System Tray or in the Email Messages window.");
    v.setCaption(Element(ctl::lblMenuColours, 1),
                 QStringLiteral("You may choose one of the six preset colours below."));
    v.setCaption(Element(ctl::lblMenuColours, 2),
                 QStringLiteral("To set your own colours select 'User Colours', then click one "
                                "of the 3 colour boxes below."));
    const bool user = w.DTheme == 6;
    for (const auto& box : {ctl::lbl3DTopColour, ctl::lbl3DMiddleColour, ctl::lbl3DBottomColour})
        v.setEnabled(box, user);
    v.setVisible(Element(ctl::lblMenuColours, 6), user);

    const bool raised = w.ButtonStyle == 1;
    v.setEnabled(ctl::fraApplyStyle, raised);
    for (int i = 0; i < 4; ++i)
        v.setEnabled(Element(ctl::optApplyStyle, i), raised);
    const bool sorting = w.MessageSort == 1;
    v.setEnabled(ctl::fraSort, sorting);
    for (int i = 0; i < 6; ++i)
        v.setEnabled(Element(ctl::optSortColumn, i), sorting);
    for (int i = 0; i < 2; ++i)
        v.setEnabled(Element(ctl::optSortOrder, i), sorting);
}

bool OptionsControlChanged(AppContext& ctx, const QString& control) {
    MainView& v = *ctx.view;
    if (control == ctl::TreeView) {
        ShowOptionsPage(ctx, v.currentIndex(ctl::TreeView) + 1);
        return true;
    }
    bool known = false;
    for (const CheckKey& c : Checks)
        known = known || control == c.control;
    for (const NumberBox& box : Numbers) {
        if (control == box.control) {
            CorrectNumber(ctx, box);
            known = true;
        }
    }
    if (control == ctl::txtMinutes) {
        CorrectMinutes(ctx);
        known = true;
    }
    for (int item = 0; item < 4; ++item) {
        if (control == Element(ctl::updNoCheck, item)) {
            NoCheckSpinChanged(ctx, item);
            known = true;
        }
    }
    for (const OptionKey& a : OptionArrays)
        known = known || control.startsWith(a.array + QLatin1Char('('));
    known = known || control.startsWith(ctl::optRunSize + QLatin1Char('(')) ||
            control.startsWith(ctl::optSortOrder + QLatin1Char('('));
    if (control.startsWith(ctl::opt3DTheme + QLatin1Char('(')))
        SetThemeColours(ctx);
    if (control == ctl::txtDefaultClient) {
        const QString path = v.text(control);
        ctx.shell.DefaultClientValid = IsValidClient(*ctx.svc.files, path);
        if (ctx.shell.DefaultClientValid) {
            ExtractClientIcon(ctx, path, 0);
            ShowClientIcon(ctx, 0);
        } else {
            ShowClientIcon(ctx, -1);
        }
        known = true;
    }
    known = known || control == ctl::txtDefaultSound;
    if (!known)
        return false;
    OptionsDirtyCheck(ctx);
    return true;
}

bool OptionsButtonClick(AppContext& ctx, const QString& toolbar, const QString& key) {
    if (toolbar != ctl::tbrOptMisc)
        return ClientSoundButtonClick(ctx, toolbar, key);
    MainView& v = *ctx.view;
    if (key == QLatin1String("RestoreColWidth")) {
        // At once, and outside the working copy.
        RestoreColumnWidths(ctx);
        return true;
    }
    const int value = key == QLatin1String("SelectAll") ? 1 : 0;
    for (const auto& box : {ctl::chkFromToolTips, ctl::chkToToolTips, ctl::chkSubjectToolTips})
        v.setChecked(box, value);
    OptionsDirtyCheck(ctx);
    return true;
}

bool OptionsLinkClick(AppContext& ctx, const QString& label) {
    if (label != ctl::lbl3DTopColour && label != ctl::lbl3DMiddleColour &&
        label != ctl::lbl3DBottomColour)
        return false;
    if (ctx.view->optionIndex(ctl::opt3DTheme) == 6) {
        PickColour(ctx, label);
        OptionsDirtyCheck(ctx);
    }
    return true;
}

void SaveOptionsPage(AppContext& ctx) {
    SaveOptions(ctx, WorkingOptions(ctx));
}

void CancelOptionsEdit(AppContext& ctx) {
    LoadOptionsPage(ctx);
    RefreshClientIcons(ctx);
}

void ShowOptionsPage(AppContext& ctx, int node) {
    if (node < 1 || node > 6)
        return;
    MainView& v = *ctx.view;
    ctx.shell.OptionsPage = node;
    v.setCaption(ctl::lblOptionsTitle, QString::fromLatin1(NodeTexts[node - 1]));
    for (int i = 1; i <= 6; ++i)
        v.setVisible(Element(ctl::fraOptions, i), false);
    v.setVisible(Element(ctl::fraOptions, node), true);
    if (v.currentIndex(ctl::TreeView) != node - 1 && v.items(ctl::TreeView).size() >= node)
        v.setCurrentIndex(ctl::TreeView, node - 1);
}

} // namespace velmora
