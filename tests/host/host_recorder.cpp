#include "host_recorder.h"

#include <iostream>

namespace quillon {
namespace {

struct Recorded {
  std::vector<Note> notes;
  std::vector<Output> outputs;
  bool narrating = false;
};

Recorded& Record() {
  static Recorded record;
  return record;
}

bool CarriesNames(int code) {
  return code == ProjectChangeFileRemoved || code == ProjectChangeFileAdded ||
         code == ProjectChangeGroupAdded || code == ProjectChangeGroupRemoved ||
         code == ProjectChangeDependencies || code == ProjectChangeReloaded;
}

// The pointer is only valid during the call, so the text is copied now.
std::string TextOf(intptr_t value) {
  const char* text = reinterpret_cast<const char*>(value);
  return text == nullptr ? "(null)" : text;
}

}  // namespace

void PrintTo(const Note& note, std::ostream* os) {
  *os << note.code << "(" << note.first << ", " << note.second << ")";
}

void PrintTo(const Output& output, std::ostream* os) {
  *os << "channel " << output.channel << " action " << output.action << " \"" << output.text
      << "\"";
}

void SetNarrating(bool on) { Record().narrating = on; }

int QUILLON_CALL RecordChange(intptr_t first, intptr_t second, int code) {
  Note note = CarriesNames(code) ? Note{code, TextOf(first), TextOf(second)}
                                 : Note{code, std::to_string(first), std::to_string(second)};
  if (Record().narrating) {
    std::cout << "  change ";
    PrintTo(note, &std::cout);
    std::cout << "\n";
  }
  Record().notes.push_back(note);
  return 0;
}

int QUILLON_CALL RecordHost(int code, void* record) {
  if (code == HostOutput && record != nullptr) {
    const OutputRecord* sent = static_cast<const OutputRecord*>(record);
    Output output{sent->channel, sent->action, sent->text == nullptr ? "(null)" : sent->text};
    if (Record().narrating) {
      std::cout << "  host output ";
      PrintTo(output, &std::cout);
      std::cout << "\n";
    }
    Record().outputs.push_back(output);
  }
  return 0;
}

std::vector<Note> TakeNotes() {
  std::vector<Note> notes;
  notes.swap(Record().notes);
  return notes;
}

std::vector<Output> TakeOutputs() {
  std::vector<Output> outputs;
  outputs.swap(Record().outputs);
  return outputs;
}

}  // namespace quillon
