#pragma once

// The file the editor writes from its untouched form, kept once as tests/data/untouched-form.bin
// and written there by hand from the form's start values, so that every suite compares against
// the same independent bytes.

#include <QByteArray>

// The 167 bytes; the test stops with a message when the data file cannot be read.
QByteArray untouchedFormFile();
