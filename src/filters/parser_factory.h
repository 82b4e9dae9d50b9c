// The parser for a filter name.
#ifndef QUILLON_FILTERS_PARSER_FACTORY_H
#define QUILLON_FILTERS_PARSER_FACTORY_H

#include <memory>
#include <string_view>
#include <vector>

#include "filters/output_parser.h"

namespace quillon {

// A new parser for the filter named exactly `filter_name` (case counts);
// null for a name without one.
std::unique_ptr<COutputParser> MakeParser(std::string_view filter_name);

// The filter names that have a parser, in registration order.
std::vector<std::string_view> ParserFilterNames();

}  // namespace quillon

#endif  // QUILLON_FILTERS_PARSER_FACTORY_H
