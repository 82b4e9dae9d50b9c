#include "model/option_set.h"

namespace quillon {

// The base answers as an option set without such an option.
void COptionSet::SetInt(int, int, int) {}
int COptionSet::GetInt(int, int) const { return -1; }
void COptionSet::SetString(int, const std::string&, int) {}
std::string COptionSet::GetString(int, int) const { return std::string(); }
void COptionSet::SetStringList(int, const std::vector<std::string>&) {}
void COptionSet::GetStringList(int, std::vector<std::string>* list) const { list->clear(); }

void CProjectOptions::CopyTo(COptionSet&) const {}
void CLinkGroupOptions::CopyTo(COptionSet&) const {}

}  // namespace quillon
