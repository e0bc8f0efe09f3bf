#pragma once

#include "platform/Clock.h"

namespace velmora {

class SettableClock : public Clock {
public:
    QDateTime now() const override { return moment; }
    void set(const QString& isoLocal) { moment = QDateTime::fromString(isoLocal, Qt::ISODate); }

    QDateTime moment = QDateTime(QDate(2026, 11, 21), QTime(10, 15, 5));
};

} // namespace velmora
