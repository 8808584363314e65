// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/dialogs/tool_form.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string>

namespace morvane {

/// "Model Modifier": assembles an aircraft with flexing wings and a simple shadow.
class ModelModifier : public ToolForm {
    Q_OBJECT

  public:
    ModelModifier(Desk& desk, WindowState& state);
    ~ModelModifier() override;

  protected:
    void leaving() override;

  private:
    struct Controls;

    static constexpr std::size_t path_count = 5;

    void connect_controls();
    std::array<std::string, path_count> paths() const;
    void browse(std::size_t part);
    void take_dropped(const QString& base);
    void allow(std::size_t part, bool allowed);
    void process_aircraft();
    void backup();
    void restore();

    std::unique_ptr<Controls> ui_;
};

} // namespace morvane
