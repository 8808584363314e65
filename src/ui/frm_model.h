#pragma once

#include "system/services.h"
#include "ui/qt_reporter.h"
#include "ui/tool_form.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string>

class QLineEdit;
class QPushButton;

namespace morvane {

namespace Ui {
class frmModel;
}

/// "Model Modifier": assembles an aircraft with flexing wings and a simple shadow.
class frmModel : public ToolForm {
    Q_OBJECT

  public:
    frmModel(Desk& desk, WindowState& state);
    ~frmModel() override;

  protected:
    void leaving() override;

  private:
    static constexpr std::size_t path_count = 5;

    Services services() { return {desk_.disk, reporter_}; }
    void connect_controls();
    std::array<std::string, path_count> paths() const;
    void browse(std::size_t part);
    void allow(std::size_t part, bool allowed);
    void process_aircraft();
    void backup();
    void restore();

    std::unique_ptr<Ui::frmModel> ui_;
    QtReporter reporter_;
    std::array<QLineEdit*, path_count> fields_;
    std::array<QPushButton*, path_count> browse_buttons_;
};

} // namespace morvane
