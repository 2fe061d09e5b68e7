#!/usr/bin/env node
// Validates JSON files against lxconfig's form schema with Ajv (JSON Schema 2020-12), the second
// validator beside validate-form.py: a pattern or keyword that two validators read differently
// shows as a disagreement. Usage: NODE_PATH=DIR validate-form-ajv.js SCHEMA FILE...
// Prints "FILE: valid" or "FILE: invalid: REASON" per file; exit 2 when the schema is not valid.
"use strict";
const fs = require("fs");
const Ajv2020 = require("ajv/dist/2020");

const schema = JSON.parse(fs.readFileSync(process.argv[2], "utf8"));
// strict: every keyword of the schema must be one Ajv knows; unicodeRegExp: the pattern is read
// with the "u" flag, as JSON Schema asks.
const ajv = new Ajv2020({ strict: true, allErrors: false, unicodeRegExp: true });
let validate;
try {
    validate = ajv.compile(schema);
} catch (error) {
    console.error(`the schema is not valid: ${error.message}`);
    process.exit(2);
}
for (const path of process.argv.slice(3)) {
    const document = JSON.parse(fs.readFileSync(path, "utf8"));
    if (validate(document)) {
        console.log(`${path}: valid`);
    } else {
        const error = validate.errors[0];
        console.log(`${path}: invalid: ${error.instancePath} ${error.message}`);
    }
}
