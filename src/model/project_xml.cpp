#include "model/project_xml.h"

namespace quillon {

Status WriteProjectXml(CXmlWriter& writer, const CProjectData& project,
                       const std::string& project_name,
                       const std::vector<std::string>& dependencies, const std::string& stamp) {
  writer.Comment("Created on " + stamp);
  const char* top = writer.BeginElement("Project", "Name", &project_name);
  if (const CProjectTarget* first = project.first_target()) {
    for (const auto& group : first->groups) {
      const char* previous = writer.BeginElement("Group", "Name", &group->name);
      for (const auto& file : group->files) writer.LeafElement("File", file->display_name());
      writer.EndElement(previous);
    }
  }
  const char* previous = writer.BeginElement("Dependencies");
  for (const std::string& name : dependencies) writer.LeafElement("File", name);
  writer.EndElement(previous);
  writer.EndElement(top);
  return writer.Close();
}

}  // namespace quillon
