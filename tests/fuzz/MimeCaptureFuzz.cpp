// One message as arbitrary bytes through the capture: parsed by GMime into
// the fields the program keeps, each read as a capture reads it.
#include "messages/Capture.h"
#include "messages/MimeParser.h"
#include "messages/RetrievedMessage.h"

#include <cstdint>
#include <cstdlib>

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray message(reinterpret_cast<const char*>(data), qsizetype(size));
    static const QDateTime retrievedAt = QDateTime::fromSecsSinceEpoch(1790000000, Qt::UTC);

    RetrievedMessage item;
    item.setData(message, retrievedAt);
    if (item.Size() != qint64(size) || !item.Date().isValid() || item.AttachmentCount() < 0)
        std::abort();
    // The header block comes whatever the bytes: Latin-1 where not UTF-8.
    if (item.HeaderText().isEmpty() != HeaderBlock(message).isEmpty())
        std::abort();
    const QString fields[] = {CleanFrom(item.From()), CleanTo(item.To()),
                              item.Subject(),         item.BodyText(),
                              SizeText(item.Size()),  RetrievedMessage::HeaderDigest(message)};
    Q_UNUSED(fields);
    return 0;
}
