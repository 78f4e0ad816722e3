// Questions to the user in the middle of an operation.
#pragma once

#include <string>

namespace rowvane {

class Questions {
 public:
  virtual ~Questions() = default;
  // True for Yes.
  virtual bool ask(const std::string& question) = 0;
};

}  // namespace rowvane
