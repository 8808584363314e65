// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"

#include <QString>
#include <QStringList>

class QWidget;

namespace morvane {

/// What the user decides about work that is not saved.
enum class Unsaved { Save, Discard, Cancel };

/// Every modal question that the window puts to the user. The tests answer them without a person.
class Dialogs {
  public:
    Dialogs() = default;
    Dialogs(const Dialogs&) = delete;
    Dialogs& operator=(const Dialogs&) = delete;
    virtual ~Dialogs() = default;

    /// A message box with an OK button. `explanation` stands below the text, smaller.
    virtual void show_box(QWidget* parent, const QString& text, Icon icon,
                          const QString& explanation) = 0;
    /// The same for a box that may come again and again; true when the user wants no more of it.
    virtual bool show_repeated_box(QWidget* parent, const QString& text, Icon icon) = 0;
    /// A Yes/No question; true for Yes. Nothing is chosen beforehand but No.
    virtual bool ask(QWidget* parent, const QString& text, Icon icon, const QString& title) = 0;
    /// Save is not offered when `can_save` is false.
    virtual Unsaved ask_unsaved(QWidget* parent, const QString& text, bool can_save) = 0;

    /// The file chosen, or an empty text when the user gives up. `filter` is "NAME (PATTERN ...)".
    virtual QString open_file(QWidget* parent, const QString& title, const QString& folder,
                              const QString& filter) = 0;
    /// The same for several files; none when the user gives up.
    virtual QStringList open_files(QWidget* parent, const QString& title, const QString& folder,
                                   const QString& filter) = 0;
    virtual QString save_file(QWidget* parent, const QString& title, const QString& path,
                              const QString& filter) = 0;
};

/// Message boxes of the program's own, file dialogs of the platform.
class SystemDialogs final : public Dialogs {
  public:
    void show_box(QWidget* parent, const QString& text, Icon icon,
                  const QString& explanation) override;
    bool show_repeated_box(QWidget* parent, const QString& text, Icon icon) override;
    bool ask(QWidget* parent, const QString& text, Icon icon, const QString& title) override;
    Unsaved ask_unsaved(QWidget* parent, const QString& text, bool can_save) override;
    QString open_file(QWidget* parent, const QString& title, const QString& folder,
                      const QString& filter) override;
    QStringList open_files(QWidget* parent, const QString& title, const QString& folder,
                           const QString& filter) override;
    QString save_file(QWidget* parent, const QString& title, const QString& path,
                      const QString& filter) override;
};

} // namespace morvane
