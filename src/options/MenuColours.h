#pragma once

#include <QString>
#include <QStringList>

namespace velmora {

struct AppContext;

// The popup menus' colours and captions.
void ApplyMenuColourDefault(AppContext& ctx);
void MenuDesigner(AppContext& ctx);
void ReleaseMenus(AppContext& ctx);

// A theme's three colours, 0x00BBGGRR.
struct MenuTheme {
    const char* caption;
    qint32 top;
    qint32 middle;
    qint32 bottom;
};
constexpr int UserTheme = 6;
// The six presets, 0 to 5; the user's colours are the record's.
const MenuTheme& PresetTheme(int theme);
QStringList ThemeCaptions();

// Where the menu style file lies: the program's folder.
QString MenuStyleFilePath(AppContext& ctx);
// Writes the menu style file anew from the record, and has the menus take
// it up. A file that cannot be written leaves the menus as they were.
void WriteMenuStyleFile(AppContext& ctx);
// The colour boxes of the Options page take the chosen theme's colours.
void SetThemeColours(AppContext& ctx);
// The colour dialog for one of the three boxes.
void PickColour(AppContext& ctx, const QString& box);

// Flat or raised, by toolbar group.
struct ButtonStyles {
    bool upperRaised = false;
    bool intermediateRaised = false;
    bool lowerRaised = false;
    bool changed = true;
};
ButtonStyles ButtonStylesFor(int buttonStyle, int applyStyle);
// The record's ButtonStyle and ApplyStyle on the toolbars.
void ApplyButtonStyle(AppContext& ctx);

} // namespace velmora
