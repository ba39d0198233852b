#pragma once

#include "platform/printer.h"

namespace lexicove {

// The save and print dialogs, Qt's own on every system, so that they open
// with the focus where a keyboard user types (the file name, the printer).
class QtFileDialogs final : public FileDialogs {
public:
    QString saveFile(QWidget *parent, const QString &filter) override;
    PrintChoice choosePrinter(QWidget *parent, const PrintRequest &request) override;
};

} // namespace lexicove
