#include "platform/StateView.h"

namespace velmora {

namespace {

using K = ControlKind;

void Check(const QString& name, std::initializer_list<ControlKind> kinds) {
    if (kinds.size() == 0)
        KindOf(name);
    else
        Expect(name, kinds);
}

} // namespace

StateTabStrip::Tab* StateTabStrip::at(int tab) {
    return tab >= 1 && tab <= tabs.size() ? &tabs[tab - 1] : nullptr;
}

void StateTabStrip::clear() {
    tabs.clear();
    current = 0;
}

void StateTabStrip::addTab(const QString& caption, const QString& imageKey) {
    tabs.append({caption, imageKey});
    if (tabs.size() == 1)
        current = 1;
}

void StateTabStrip::setCaption(int tab, const QString& caption) {
    if (Tab* t = at(tab))
        t->caption = caption;
}

QString StateTabStrip::caption(int tab) const {
    return tab >= 1 && tab <= tabs.size() ? tabs[tab - 1].caption : QString();
}

void StateTabStrip::setImage(int tab, const QString& imageKey) {
    if (Tab* t = at(tab))
        t->image = imageKey;
}

QString StateTabStrip::image(int tab) const {
    return tab >= 1 && tab <= tabs.size() ? tabs[tab - 1].image : QString();
}

void StateTabStrip::select(int tab) {
    if (at(tab))
        current = tab;
}

bool StateMessageList::valid(int row) const {
    return row >= 1 && row <= rows.size();
}

void StateMessageList::clear() {
    rows.clear();
    selected.clear();
    current = 0;
}

void StateMessageList::addRow(const ListRow& row) {
    rows.append(row);
    selected.append(false);
}

ListRow StateMessageList::row(int row) const {
    return valid(row) ? rows[row - 1] : ListRow();
}

bool StateMessageList::isRowSelected(int row) const {
    return valid(row) && selected[row - 1];
}

void StateMessageList::setRowSelected(int row, bool on) {
    if (valid(row))
        selected[row - 1] = on;
}

void StateMessageList::setCurrentRow(int row) {
    current = valid(row) ? row : 0;
}

int StateMessageList::rowAt(const QPoint& point) const {
    if (point.y() < 0 || point.x() < 0 || point.x() >= pixelWidth)
        return 0;
    const int row = point.y() / RowHeight + 1;
    return row <= rows.size() ? row : 0;
}

int StateStatusBar::index(int panel) {
    // The bar has five panels: asking for another is a fault of the program.
    if (panel < 1 || panel > 5)
        throw UnknownControl(QStringLiteral("no status panel %1").arg(panel));
    return panel - 1;
}

void StateStatusBar::setProgress(int minimum, int maximum, int value) {
    progressMin = minimum;
    progressMax = maximum;
    progressValue = value;
}

void StateTray::modify(const QList<int>& p, const QString& t) {
    pictureStack = p;
    tipText = t;
}

StateView::Control& StateView::edit(const QString& name, std::initializer_list<ControlKind> kinds) {
    Check(name, kinds);
    if (!controls.contains(name))
        touchedNames.append(name);
    return controls[name];
}

StateView::Control StateView::read(const QString& name,
                                   std::initializer_list<ControlKind> kinds) const {
    Check(name, kinds);
    return controls.value(name);
}

StateView::Control StateView::control(const QString& name) const {
    return read(name);
}

void StateView::setEnabled(const QString& name, bool enabled) {
    edit(name).enabled = enabled;
}

bool StateView::isEnabled(const QString& name) const {
    return read(name).enabled;
}

void StateView::setVisible(const QString& name, bool visible) {
    edit(name).visible = visible;
}

bool StateView::isVisible(const QString& name) const {
    return read(name).visible;
}

void StateView::setCaption(const QString& name, const QString& caption) {
    edit(name, {K::Button, K::Label, K::Link, K::MenuEntry, K::Frame, K::Check, K::Option})
        .caption = caption;
}

QString StateView::caption(const QString& name) const {
    return read(name, {K::Button, K::Label, K::Link, K::MenuEntry, K::Frame, K::Check, K::Option})
        .caption;
}

void StateView::setToolTip(const QString& name, const QString& tip) {
    edit(name).toolTip = tip;
}

QString StateView::toolTip(const QString& name) const {
    return read(name).toolTip;
}

void StateView::setImage(const QString& name, const QString& imageKey) {
    edit(name, {K::Button, K::MenuEntry, K::Header, K::Label}).image = imageKey;
}

QString StateView::image(const QString& name) const {
    return read(name, {K::Button, K::MenuEntry, K::Header, K::Label}).image;
}

void StateView::setFocus(const QString& name) {
    KindOf(name);
    focus = name;
}

void StateView::popUpMenu(const QString& name) {
    Expect(name, {K::Menu});
    poppedUpMenus.append(name);
}

void StateView::setText(const QString& name, const QString& text) {
    Control& c = edit(name, {K::Text, K::Spin, K::Combo});
    c.text = c.maxLength > 0 ? text.left(c.maxLength) : text;
}

QString StateView::text(const QString& name) const {
    return read(name, {K::Text, K::Spin, K::Combo}).text;
}

void StateView::setMaxLength(const QString& name, int length) {
    edit(name, {K::Text}).maxLength = length;
}

void StateView::setChecked(const QString& name, int value) {
    edit(name, {K::Check}).checked = value == 1 ? 1 : 0;
}

int StateView::checked(const QString& name) const {
    return read(name, {K::Check}).checked;
}

void StateView::setOptionIndex(const QString& array, int index) {
    Expect(Element(array, index), {K::Option});
    edit(Element(array, 0), {K::Option}).optionIndex = index;
}

int StateView::optionIndex(const QString& array) const {
    return read(Element(array, 0), {K::Option}).optionIndex;
}

void StateView::setItems(const QString& name, const QStringList& items) {
    Control& c = edit(name, {K::Combo});
    c.items = items;
    c.currentIndex = -1;
}

QStringList StateView::items(const QString& name) const {
    return read(name, {K::Combo}).items;
}

void StateView::setCurrentIndex(const QString& name, int index) {
    Control& c = edit(name, {K::Combo});
    if (index < -1 || index >= c.items.size())
        index = -1;
    c.currentIndex = index;
    c.text = index >= 0 ? c.items[index] : QString();
}

int StateView::currentIndex(const QString& name) const {
    return read(name, {K::Combo}).currentIndex;
}

void StateView::setRange(const QString& name, int minimum, int maximum) {
    Control& c = edit(name, {K::Spin});
    c.minimum = minimum;
    c.maximum = maximum;
}

void StateView::setColour(const QString& name, quint32 bgr) {
    edit(name, {K::Colour, K::Label, K::Link, K::Frame}).colour = bgr & 0x00FFFFFFu;
}

quint32 StateView::colour(const QString& name) const {
    return read(name, {K::Colour, K::Label, K::Link, K::Frame}).colour;
}

} // namespace velmora
