#!/usr/bin/python3
"""Validates JSON files against lxconfig's form schema with the jsonschema library, as a script
or an editor would before import. Usage: validate-form.py SCHEMA FILE...
Prints "FILE: valid" or "FILE: invalid: REASON" per file; exit 0 unless the schema itself is
not a valid schema (exit 2)."""

import json
import sys

import jsonschema


def main():
    with open(sys.argv[1], encoding="utf-8") as stream:
        schema = json.load(stream)
    validator_class = jsonschema.validators.validator_for(schema)
    try:
        validator_class.check_schema(schema)
    except jsonschema.exceptions.SchemaError as error:
        print(f"the schema is not valid: {error.message}", file=sys.stderr)
        return 2
    validator = validator_class(schema)
    for path in sys.argv[2:]:
        with open(path, encoding="utf-8") as stream:
            document = json.load(stream)
        errors = sorted(validator.iter_errors(document), key=lambda e: list(e.path))
        print(f"{path}: " + ("valid" if not errors else f"invalid: {errors[0].message}"))
    return 0


if __name__ == "__main__":
    sys.exit(main())
