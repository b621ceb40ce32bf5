// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <functional>

/// The menu or list that is open, or nullptr.
QWidget *openMenu();
/// The filter dialog that is open, or nullptr.
QWidget *openDialog();
/// Lets \a act do something to what \a find finds, once it is open, from inside the event loop that it runs.
void onceOpen(const std::function<QWidget *()> &find, const std::function<void(QWidget *)> &act);
