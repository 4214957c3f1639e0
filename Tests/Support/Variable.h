// Sets or unsets an environment variable for the life of the object.
//
// Threads: only while no other thread reads the environment.
// Lifetime: the name must outlive the object.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace support {

class Variable {
 public:
  // A null pointer unsets it.
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    value ? ::setenv(name, value, 1) : ::unsetenv(name);
  }
  ~Variable() { before_ ? ::setenv(name_, before_->c_str(), 1) : ::unsetenv(name_); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> before_;
};

}  // namespace support
