#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// The Rules page: it edits the working rule set and brings it into the live
// set and the Rules file only on a save (or a delete, which saves all).
// The entries of the rule shown are its working Description slots; Undo
// and Redo move DescCount over them, up to RedoCount.

// Captions, lists and tips that never change.
void ArrangeRulePage(AppContext& ctx);
// Throws unsaved changes away and shows the current rule.
void LoadRulePage(AppContext& ctx);
void ClearRulePage(AppContext& ctx);
void SetRulePageEnabled(AppContext& ctx, int count);
// Shows rule `number` of the working set; 0 clears the page.
void ShowRule(AppContext& ctx, int number);
void ShowRuleEnabled(AppContext& ctx, int enabled);
// The comparisons and the criteria prompt that go with a field.
void FillCondition(AppContext& ctx, const QString& where);
// Compares the working set with the live one and sets the buttons: a dirty
// page turns its Save and Cancel on and the main toolbar off.
void CheckRulesDirty(AppContext& ctx);
bool RulesDirty(const AppContext& ctx);

void UpdateDescription(AppContext& ctx);
void ClearDescription(AppContext& ctx);
void UndoDescription(AppContext& ctx);
void RedoDescription(AppContext& ctx);
void AddRule(AppContext& ctx);
void DeleteRule(AppContext& ctx);
void MoveRule(AppContext& ctx, bool up);
// False when nothing was written: a rule refused, or the file could not
// be written (the page then stays dirty).
bool StoreRules(AppContext& ctx);

// The page's own toolbars (tbrRules, tbrRuleUpdate, the rules' move bar);
// false for another toolbar.
bool RulesToolbarClick(AppContext& ctx, const QString& toolbar, const QString& key);
// A control of the page changed by the user's hand; false for a control
// that is not the page's.
bool RuleControlChanged(AppContext& ctx, const QString& control);

// The working set written to `path` and made live; false, with the
// problem shown and the live set as it was, when the file was kept.
bool WriteWorkingRules(AppContext& ctx, const QString& path);

} // namespace velmora
