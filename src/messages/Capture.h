#pragma once

#include <QString>

namespace velmora {

struct AppContext;

// Brings an account's messages over from the logged-in POP client into the
// message store: Quick Check, the fetch, the fields, the new-message test,
// the rules, the counters and the sort.
void ProcessMessages(AppContext& ctx, int account);

// The field cleaning of a capture.
QString CleanFrom(QString from);
QString CleanTo(QString to);
// Whole kilobytes of 1000 bytes, rounded half to even.
QString SizeText(qint64 bytes);

} // namespace velmora
