#include "context/AppContext.h"

#include "context/TimeFormat.h"
#include "options/FileReports.h"
#include "platform/Clock.h"

#include <stdexcept>

namespace velmora {

AppContext::AppContext(const Services& services) : svc(services) {
    if (*svc.missing())
        throw std::invalid_argument(std::string("no platform service: ") + svc.missing());
    ReportSettingsProblems(*this);
}

AppContext::~AppContext() {
    StopReportingSettingsProblems(*this);
}

QDateTime AppContext::now() const {
    return svc.clock->now();
}

QString AppContext::format(const QDateTime& moment, const QString& pattern) const {
    return FormatTime(moment, pattern, svc.locale);
}

} // namespace velmora
