// Passwords from files, from the environment and from the terminal. They are never arguments: other users can
// see those.
#pragma once

#include <string>

#include "crypto/secret.h"

namespace rowvane::cli {

// Where a password comes from.
struct PasswordPlace {
  std::string file;      // its first line; "-": the terminal; empty: the variable, if it is there
  std::string variable;  // "RVB_PASSWORD"
  std::string prompt;    // "Password: "
};

// Reads the password at PLACE; an empty one when there is none. A new one (REPEATED not null) is asked twice
// on the terminal; from elsewhere it counts as repeated. Answers a status and reports what is wrong.
int read_password(const PasswordPlace& place, Secret& password, Secret* repeated = nullptr);

}  // namespace rowvane::cli
