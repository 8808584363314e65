// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/programs.h"
#include "upkeep/compiler_places.h"

#include <QWidget>

#include <memory>
#include <string>
#include <vector>

class QLabel;
class QTextBrowser;
class QTimer;

namespace morvane {

class Disk;

/// Shows what a compiler prints, while it runs and afterwards. The places that it names are links.
class CompilerPane : public QWidget {
    Q_OBJECT

  public:
    explicit CompilerPane(Disk& disk, QWidget* parent = nullptr);
    ~CompilerPane() override;

    /// Shows the file that a compiler writes which was started in `folder`, until it ends.
    void follow(const std::string& path, const std::string& folder,
                std::unique_ptr<RunningProgram> program);

  Q_SIGNALS:
    /// The user wants to see a line of a file.
    void place_chosen(const QString& path, std::size_t line);

  private:
    void look();
    void read_again();
    void choose(int place);

    Disk& disk_;
    QTextBrowser* text_;
    QLabel* status_;
    QTimer* timer_;
    std::string path_;
    std::string folder_;
    std::string shown_; // the bytes of the file that are shown
    std::vector<CompilerPlace> places_;
    std::unique_ptr<RunningProgram> program_;
};

} // namespace morvane
