#include "app/AppContext.h"

#include "app/TimeFormat.h"
#include "platform/Clock.h"

namespace velmora {

QDateTime AppContext::now() const {
    return svc.clock->now();
}

QString AppContext::format(const QDateTime& moment, const QString& pattern) const {
    return FormatTime(moment, pattern, svc.locale);
}

} // namespace velmora
