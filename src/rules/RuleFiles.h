#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// Several Rules files can lie in the program's folder, one for each user;
// the program uses the one RulesIniFileName names. A Rules file's name
// always begins with "Rules".

// Up to five "Rules" and then up to four "Rule" taken out of `name`,
// "Rules" put in front.
QString RulesPrefix(const QString& name);
// What the rename makes of the typed text: the prefix, and ".ini" unless
// the name ends in exactly that.
QString RenamedRulesFile(const QString& typed);
// A name that would put the file outside the program's folder.
bool LeavesRulesFolder(const QString& name);

// frmRuleFile: the working rules are written under a new name, which the
// program then uses; the old file stays.
void RenameRuleFile(AppContext& ctx);
// A Rules file chosen anywhere becomes the rules in force, copied into the
// program's folder under its own name; rules bound to an account are
// widened to all accounts.
void ImportRules(AppContext& ctx);

} // namespace velmora
