// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/cli.h"
#include "cli/json_text.h"
#include "source/materials.h"
#include "source/open_set.h"

#include <iomanip>
#include <iostream>

namespace morvane::cli {

namespace {

Json translation_json(const OpenSet& set, std::size_t row) {
    const Translation& material = set.translation(row);
    return {{"row", row},
            {"number", material.number},
            {"list_line", material.list_line},
            {"selecting_line", material.block.selecting_line},
            {"block_end", material.block.block_end},
            {"highlight", material.highlight},
            {"color", material.color},
            {"processed", material.processed},
            {"triangles", count_triangles(set.model, material.block)},
            {"highlight_name", highlight_color_name(material.highlight)},
            {"rewritten", is_rewritten(set.model, material.block)}};
}

void print_inspect_json(Cli& cli, const OpenSet& set) {
    Json rows = Json::array();
    for (std::size_t row = 1; row <= set.translations.size(); ++row) {
        rows.push_back(translation_json(set, row));
    }
    const Placement& placement = set.placement;
    print_json(cli, {{"base", json_path(set.base)},
                     {"model_lines", set.model.upper()},
                     {"frame_lines", set.frame.upper()},
                     {"materials", set.materials.size()},
                     {"vertex_list", set.vertex_list},
                     {"translations", rows},
                     {"placement",
                      {{"a", placement.longitude},
                       {"b", placement.latitude},
                       {"b_degrees", placement.latitude_degrees},
                       {"line", json_text(placement.scale_line)},
                       {"rotation", placement.rotation}}},
                     {"messages", json_texts(cli.reporter.messages())}});
}

void print_material(const OpenSet& set, std::size_t row) {
    const Translation& material = set.translation(row);
    std::cout << std::setw(3) << row << "  MATERIAL " << std::left << std::setw(4)
              << material.number << ' ' << std::setw(8) << highlight_color_name(material.highlight)
              << std::right << "color " << material.color << "  lines "
              << material.block.selecting_line << " to " << material.block.block_end
              << "  triangles " << count_triangles(set.model, material.block)
              << (is_rewritten(set.model, material.block) ? "  rewritten" : "") << '\n';
}

int run_inspect(Cli& cli, const std::string& base) {
    OpenSet set;
    if (!open_source_set(cli.services(), set, base)) {
        cli.reporter.print_notes();
        return failed;
    }
    if (cli.json) {
        print_inspect_json(cli, set);
        return done;
    }
    cli.reporter.print_log();
    for (std::size_t row = 1; row <= set.translations.size(); ++row) {
        print_material(set, row);
    }
    return done;
}

} // namespace

void add_inspect_command(CLI::App& app, Cli& cli) {
    auto* command = app.add_subcommand("inspect", "Open a set and list its marked materials");
    const auto base = std::make_shared<std::string>();
    command->add_option("BASE", *base, "Base path of the set, without an ending")->required();
    add_example(*command, "inspect airport");
    on_call(*command, cli, [&cli, base] { return run_inspect(cli, *base); });
}

} // namespace morvane::cli
