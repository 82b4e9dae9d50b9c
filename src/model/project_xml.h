// The project as an XML document for outside tools: the first target's link
// groups with their files, then the files the dependency graph knows.
#ifndef QUILLON_MODEL_PROJECT_XML_H
#define QUILLON_MODEL_PROJECT_XML_H

#include <string>
#include <vector>

#include "model/project_data.h"
#include "model/xml_writer.h"

namespace quillon {

// Writes the whole document into an open writer and closes it. `stamp` is
// the creation date and time as the comment shows them.
Status WriteProjectXml(CXmlWriter& writer, const CProjectData& project,
                       const std::string& project_name,
                       const std::vector<std::string>& dependencies, const std::string& stamp);

}  // namespace quillon

#endif  // QUILLON_MODEL_PROJECT_XML_H
