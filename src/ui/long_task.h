// Work of the engine that takes long, with a progress box that can cancel it.
#pragma once

#include <QString>
#include <functional>

#include "core/messages/questions.h"
#include "core/progress.h"

class QWidget;

namespace rowvane {

class DatabaseDocument;

// Whether a box appears when work takes longer than a moment; without one nobody can cancel.
enum class ProgressBox { kShown, kHidden };

// Runs WORK on a thread of its own and returns when it has ended. Meanwhile the window stays alive, but takes
// no input: nothing else may touch what WORK works on. The box appears over PARENT. False when the user
// cancelled; WORK then has left all as it was.
bool run_long_task(QWidget* parent, const QString& caption, const std::function<void(Progress&)>& work,
                   ProgressBox progress_box = ProgressBox::kShown);

// The same for work that changes DOCUMENT: VIEWS, which show it, stand still meanwhile, and its changes are
// told at the end.
bool run_long_change(QWidget* views, const QString& caption, DatabaseDocument& document,
                     const std::function<void(Progress&)>& work);

// What runs by itself, such as a timer, leaves the databases alone meanwhile.
bool is_long_task_running();

// Puts the questions of such work to the user on the window's thread, and waits for the answers.
class QuestionsOnWindow final : public Questions {
 public:
  // Both must outlive this.
  QuestionsOnWindow(Questions& questions, QWidget& window) : questions_(questions), window_(window) {}
  bool ask(const std::string& question) override;

 private:
  Questions& questions_;
  QWidget& window_;
};

}  // namespace rowvane
