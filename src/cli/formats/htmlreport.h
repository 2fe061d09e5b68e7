#pragma once

// The printable settings sheet of `lxconfig report`: one self-contained HTML page (inline
// style, no scripts, nothing fetched; well-formed XML as well) with a section per file that
// starts on a new sheet of paper. Each section names the file and its camera, has a sign-off
// block, the checksum and the editor's verdict, then the eight pages of the window in tab
// order with the editor's captions and item texts, the values that differ from the untouched
// form marked (class "changed"), and the strict findings. Every printed sheet carries the
// camera and file in its header, and the date and "page N of M" in its footer.
//
// The page is made in pieces so that a report of many files never holds more than one file's
// section: the head (which names every file, for the sheets' headers), a section per file in
// the order given, and the tail.

#include "configrecord.h"

#include <optional>
#include <string>
#include <vector>

namespace lxconfig {

struct ReportedFile
{
    std::string path;                      // as given; any bytes
    std::optional<std::string> unreadable; // why it could not be read
    std::optional<std::string> refusal;    // why the editor refuses it
    std::optional<std::string> sizeNote;   // a size other than a record's
    lumarex::ConfigRecord record;          // when it could be read
};

enum class Paper
{
    Any, // the printer's
    A4,
    Letter
};

struct SheetOptions
{
    std::string title; // the camera's name for every file; empty: each file's folder name
    Paper paper = Paper::Any;
    std::string dateLine; // the footer's date, e.g. "printed 2026-11-23"
};

// The camera a file belongs to: the title when given, else the name of the file's folder.
std::string cameraOf(const std::string &path, const SheetOptions &options);

std::string reportHead(const std::vector<std::string> &paths, const SheetOptions &options);
// The section of the file at `index` (from 0) of the head's paths.
std::string reportSection(const ReportedFile &file, std::size_t index, const SheetOptions &options);
std::string reportTail();

// The frame of a page in the sheet's style, for other pages too (compare's): the head, with the
// sheet's style and then `style`, up to the opening of <main>; reportTail() closes it.
std::string htmlPageHead(const std::string &title, const std::string &style);

} // namespace lxconfig
