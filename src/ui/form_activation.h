// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QEvent>
#include <QWidget>

namespace morvane {

/// Which form of the program was the active one last. A form counts as activated when the user
/// comes to it from another form, not when a message box or file dialog over it closes.
class FormActivation {
  public:
    /// To be asked in a form's changeEvent: whether the form has just been activated.
    bool is_activated(const QWidget& form, const QEvent& event) {
        if (event.type() != QEvent::ActivationChange || !form.isActiveWindow() || last_ == &form) {
            return false;
        }
        last_ = &form;
        return true;
    }
    /// The form is gone from the screen: its next showing is an activation.
    void forget(const QWidget& form) {
        if (last_ == &form) {
            last_ = nullptr;
        }
    }

  private:
    const QWidget* last_ = nullptr; // only compared
};

} // namespace morvane
