// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/masm.h"
#include "scene/scene.h"

#include <optional>
#include <string_view>

namespace morvane::scene {

/// The object that a generated line makes (BGL_LIGHT, KZM_FX1, KZM_WINDSOCK or KZM_LIBRARY_CALL)
/// where `frame` leads from the line's numbers to the scene. std::nullopt, and a problem, when its
/// numbers cannot be read.
std::optional<Mark> decode_mark(Command command, std::string_view text, const Affine& frame,
                                std::size_t line, Problems& problems);

/// The matrix of a BGL_TRANSFORM_MAT line, or the translation of a BGL_ANIMATE line at rest.
std::optional<Affine> decode_transform(std::string_view text);
std::optional<Affine> decode_animation(std::string_view text);

/// The turn of an INSTANCE_CALL or its kin; what is no number (a variable) is at rest.
Affine decode_turn(std::string_view text);

} // namespace morvane::scene
