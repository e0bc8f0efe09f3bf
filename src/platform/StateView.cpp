#include "platform/StateView.h"

namespace velmora {

namespace {

int stripIndex(TabStrip strip) {
    return strip == TabStrip::Email ? 0 : 1;
}

bool validPanel(int panel) {
    return panel >= 1 && panel <= 5;
}

} // namespace

void StateView::setEnabled(const QString& name, bool enabled) {
    controls[name].enabled = enabled;
}

bool StateView::isEnabled(const QString& name) const {
    return control(name).enabled;
}

void StateView::setVisible(const QString& name, bool visible) {
    controls[name].visible = visible;
}

bool StateView::isVisible(const QString& name) const {
    return control(name).visible;
}

void StateView::setCaption(const QString& name, const QString& caption) {
    controls[name].caption = caption;
}

QString StateView::caption(const QString& name) const {
    return control(name).caption;
}

void StateView::setToolTip(const QString& name, const QString& tip) {
    controls[name].toolTip = tip;
}

void StateView::setImage(const QString& name, const QString& imageKey) {
    controls[name].image = imageKey;
}

void StateView::setPanelText(int panel, const QString& text) {
    if (validPanel(panel))
        panels[panel] = text;
}

QString StateView::panelText(int panel) const {
    return validPanel(panel) ? panels[panel] : QString();
}

void StateView::setPanelPicture(int panel, const QString& imageKey) {
    if (validPanel(panel))
        panelPictures[panel] = imageKey;
}

void StateView::clearTabs(TabStrip strip) {
    tabs[stripIndex(strip)].clear();
    selected[stripIndex(strip)] = 0;
}

void StateView::addTab(TabStrip strip, const QString& caption, const QString& imageKey) {
    auto& list = tabs[stripIndex(strip)];
    list.append({caption, imageKey});
    if (list.size() == 1)
        selected[stripIndex(strip)] = 1;
}

int StateView::tabCount(TabStrip strip) const {
    return int(tabs[stripIndex(strip)].size());
}

void StateView::setTabCaption(TabStrip strip, int tab, const QString& caption) {
    auto& list = tabs[stripIndex(strip)];
    if (tab >= 1 && tab <= list.size())
        list[tab - 1].caption = caption;
}

void StateView::setTabImage(TabStrip strip, int tab, const QString& imageKey) {
    auto& list = tabs[stripIndex(strip)];
    if (tab >= 1 && tab <= list.size())
        list[tab - 1].image = imageKey;
}

QString StateView::tabImage(TabStrip strip, int tab) const {
    const auto& list = tabs[stripIndex(strip)];
    return tab >= 1 && tab <= list.size() ? list[tab - 1].image : QString();
}

void StateView::selectTab(TabStrip strip, int tab) {
    if (tab >= 1 && tab <= tabCount(strip))
        selected[stripIndex(strip)] = tab;
}

int StateView::selectedTab(TabStrip strip) const {
    return selected[stripIndex(strip)];
}

void StateView::clearList() {
    rows.clear();
    rowSelected.clear();
}

void StateView::addListRow(const ListRow& row) {
    rows.append(row);
    rowSelected.append(false);
}

bool StateView::isListRowSelected(int row) const {
    return row >= 1 && row <= rowSelected.size() && rowSelected[row - 1];
}

void StateView::setListRowSelected(int row, bool selected) {
    if (row >= 1 && row <= rowSelected.size())
        rowSelected[row - 1] = selected;
}

int StateView::listColumnWidth(int column) const {
    return columnWidths.value(column, 0);
}

void StateView::setListColumnWidth(int column, int width) {
    columnWidths[column] = width;
}

void StateView::setProgress(int minimum, int maximum, int value) {
    progressMin = minimum;
    progressMax = maximum;
    progressValue = value;
}

void StateView::trayModify(const QList<int>& picture, const QString& tip) {
    trayPicture = picture;
    trayTip = tip;
}

} // namespace velmora
