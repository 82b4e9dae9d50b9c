// Every export catches everything: a DLL inside an IDE must never end its
// host. A failure answers the export's failure value.
#ifndef QUILLON_INTERFACE_EXPORT_GUARD_H
#define QUILLON_INTERFACE_EXPORT_GUARD_H

#include <utility>

namespace quillon {

template <typename R, typename Body>
R Guarded(R failure, Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    return failure;
  }
}

template <typename Body>
void Guarded(Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
  } catch (...) {
  }
}

// Sends change code 7 on construction and 8 on destruction.
class ChangeBracket {
 public:
  ChangeBracket();
  ~ChangeBracket();
  ChangeBracket(const ChangeBracket&) = delete;
  ChangeBracket& operator=(const ChangeBracket&) = delete;
};

}  // namespace quillon

#endif  // QUILLON_INTERFACE_EXPORT_GUARD_H
