#pragma once

namespace velmora {

struct AppContext;

// Deletes messages of an account on its server: the rows selected in the
// list, or with ruleMarked every message the rules marked as spam. Asks
// first when DeleteConfirmation is on; the server's messages are found by
// their identifiers, never by position. The store then follows the user's
// decision without a new retrieval.
void DeleteMessages(AppContext& ctx, int account, bool ruleMarked);
// The list's Delete: the selected rows of the account showing, with the
// interface held and the timers suspended around it.
void EmailDelete(AppContext& ctx);
// The Spam button: the spam of every account that has some, each with its
// own question.
void EmailSpam(AppContext& ctx);

} // namespace velmora
