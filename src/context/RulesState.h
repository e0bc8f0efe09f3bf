#pragma once

#include "rules/RuleCheck.h"
#include "rules/Rules.h"

#include <QString>

namespace velmora {

// The rules subsystem's state: the rules in force, the Rules page's working
// copy, and the profile file in use.
struct RulesState {
    RuleSet LiveRules;
    RuleSet WorkingRules;
    // The rule shown on the Rules page; 0 with no rules.
    int CurrentRule = 0;
    // The profile file callers last named; a new IniFile starts on it.
    QString ProfilePath;
    RuleParseCache RuleCache;
};

} // namespace velmora
