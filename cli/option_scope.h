// Which option set an `option get|set` addresses: the key's level decides,
// and --target/--file must fit it.
#ifndef QUILLON_CLI_OPTION_SCOPE_H
#define QUILLON_CLI_OPTION_SCOPE_H

#include <string>

#include "interface/host_api.h"
#include "platform/status.h"

namespace quillon::qpm {

// What the user named; null where an option was not given.
struct OptionPlace {
  const std::string* target = nullptr;
  const std::string* file = nullptr;
};

// The catalogue entry of `key` (any case), or an error naming the key.
Status FindOptionKey(const std::string& key, const OptionInfo** info);

// The scope of a known option. Global and filter keys take neither place;
// target keys a target (the default one unless named); file keys the named
// file of a target, or without --file the target's defaults for its files.
Status ResolveScope(const OptionInfo& info, const OptionPlace& place, OptionScope* scope);

}  // namespace quillon::qpm

#endif  // QUILLON_CLI_OPTION_SCOPE_H
