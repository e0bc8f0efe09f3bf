#pragma once

#include <QList>
#include <QString>

namespace velmora {

// One stretch of a printed document in one weight.
struct PrintRun {
    QString text;
    bool bold = false;
};

// A document to print: runs of text in the desktop's sans-serif face, laid
// out within the same margin on every side. Line breaks are CR LF.
struct PrintDocument {
    QString title;
    int pointSize = 10;
    // A quarter of an inch.
    int marginTwips = 360;
    QList<PrintRun> runs;

    QString plainText() const {
        QString text;
        for (const PrintRun& run : runs)
            text += run.text;
        return text;
    }
};

class Printer {
public:
    virtual ~Printer() = default;
    // Prints on the default printer without asking. Blank when the job was
    // handed over; otherwise why not, in words for the user.
    virtual QString Print(const PrintDocument& document) = 0;
};

} // namespace velmora
