"""Validates a SARIF log against the published 2.1.0 schema (gzip-compressed), then checks that
it holds a result of the given level, rule and place.

    check_sarif.py SCHEMA LOG LEVEL RULE URI_SUFFIX LINE

RULE "-" means a result without a rule.
"""
import gzip
import json
import sys

import jsonschema


def main():
    schema_path, log_path, level, rule, uri_suffix, line = sys.argv[1:7]
    # The published schema, kept compressed and byte for byte.
    with gzip.open(schema_path, "rt", encoding="utf-8") as f:
        schema = json.load(f)
    with open(log_path, encoding="utf-8") as f:
        log = json.load(f)
    validator_class = jsonschema.validators.validator_for(schema)
    validator = validator_class(schema, format_checker=jsonschema.FormatChecker())
    errors = sorted(validator.iter_errors(log), key=lambda e: list(e.path))
    for error in errors:
        print(f"{log_path}: {'/'.join(map(str, error.path))}: {error.message}", file=sys.stderr)
    if errors:
        return 1
    for run in log["runs"]:
        for result in run["results"]:
            place = result.get("locations", [{}])[0].get("physicalLocation", {})
            if (result["level"] == level and result.get("ruleId", "-") == rule
                    and place.get("artifactLocation", {}).get("uri", "").endswith(uri_suffix)
                    and place.get("region", {}).get("startLine") == int(line)):
                return 0
    print(f"{log_path}: no {level} result {rule} at {uri_suffix}:{line}", file=sys.stderr)
    return 1


if __name__ == "__main__":
    sys.exit(main())
