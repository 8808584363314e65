// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace morvane {

/// The controls that uic made of a .ui file, put into `form`. A struct derived from it names them:
/// all members of this base are set before those of the derived struct are.
template <typename UiForm>
struct SetUp : UiForm {
    template <typename Form>
    explicit SetUp(Form* form) {
        this->setupUi(form);
    }
};

} // namespace morvane
