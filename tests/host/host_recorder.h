// The two host callbacks, recording what the library tells the host.
#ifndef QUILLON_TESTS_HOST_HOST_RECORDER_H
#define QUILLON_TESTS_HOST_HOST_RECORDER_H

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "quillon/quillon.h"

namespace quillon {

// One project-change notification. Codes that carry names keep their text
// ("(null)" for a null pointer); the others keep their values as numbers.
struct Note {
  int code = 0;
  std::string first = "0";
  std::string second = "0";

  bool operator==(const Note& other) const = default;
};

void PrintTo(const Note& note, std::ostream* os);

inline Note Begin() { return Note{ProjectChangeBegin}; }
inline Note End() { return Note{ProjectChangeEnd}; }
inline Note Modified() { return Note{ProjectChangeModified}; }
inline Note Named(int code, std::string first, std::string second) {
  return Note{code, std::move(first), std::move(second)};
}

// One OutputRecord sent with host code 1.
struct Output {
  int channel = 0;
  int action = 0;
  std::string text;

  bool operator==(const Output& other) const = default;
};

void PrintTo(const Output& output, std::ostream* os);

// The callbacks to hand to _InitProjectData.
int QUILLON_CALL RecordChange(intptr_t first, intptr_t second, int code);
int QUILLON_CALL RecordHost(int code, void* record);

// Also prints each notification and output record as it arrives.
void SetNarrating(bool on);

// What was recorded since the last call; clears the record.
std::vector<Note> TakeNotes();
std::vector<Output> TakeOutputs();

}  // namespace quillon

#endif  // QUILLON_TESTS_HOST_HOST_RECORDER_H
