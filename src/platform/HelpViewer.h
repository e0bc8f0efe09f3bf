#pragma once

#include <QString>

namespace velmora {

// The program's own help: a file of topics, each found by its number.
class HelpViewer {
public:
    virtual ~HelpViewer() = default;
    // Shows the topic `context` of the help file `file`. False when the file
    // cannot be read or has no such topic.
    virtual bool ShowTopic(const QString& file, int context) = 0;
};

} // namespace velmora
