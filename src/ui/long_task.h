// Work of the engine that takes long, with a progress box that can cancel it.
#pragma once

#include <QString>
#include <functional>

#include "core/progress.h"

class QWidget;

namespace rowvane {

// Runs WORK on a thread of its own and returns when it has ended. Meanwhile the window stays alive, but takes
// no input: nothing else may touch what WORK works on. The box over PARENT appears when WORK takes longer
// than a moment. False when the user cancelled; WORK then has left all as it was.
bool run_long_task(QWidget* parent, const QString& caption, const std::function<void(Progress&)>& work);

}  // namespace rowvane
