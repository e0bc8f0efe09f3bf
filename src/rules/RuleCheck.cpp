#include "rules/RuleCheck.h"

#include "app/AppContext.h"

namespace velmora {

void RuleCheck(AppContext& ctx, int account, int message) {
    MailMessage& m = ctx.messages.at(account, message);
    m.Delete = false;
    m.Spam = false;
}

} // namespace velmora
