// A small driver of the round-trip functions with the three commands lxconfig will offer, so
// that the documentation's example session comes from a real run:
//   roundtrip-driver explain [NAME]
//   roundtrip-driver resave FILE OUT
//   roundtrip-driver strict FILE...
// Exit 0 on success, 1 for a refused file or any strict finding, 2 for a usage error. Not
// installed; lxconfig gets the real commands.

#include "explain.h"
#include "roundtrip.h"

#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace {

using lumarex::RecordBytes;

std::optional<RecordBytes> readRecord(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    RecordBytes record{};
    file.read(reinterpret_cast<char *>(record.data()), record.size());
    return record; // a shorter file reads as if padded with zero bytes, as the editor reads it
}

int explainCommand(int argc, char **argv)
{
    const auto explanation = argc > 2 ? lumarex::roundtrip::explain(std::string_view(argv[2]))
                                      : lumarex::roundtrip::explain();
    if (!explanation.found) {
        std::cerr << "explain: no field, control or caption \"" << argv[2] << "\"\n";
        return 2;
    }
    for (const std::string &line : explanation.lines)
        std::cout << line << '\n';
    return 0;
}

int resaveCommand(const std::string &input, const std::string &output)
{
    const auto record = readRecord(input);
    if (!record) {
        std::cerr << input << ": cannot be read\n";
        return 1;
    }
    const auto prediction = lumarex::roundtrip::predictResave(*record);
    if (!prediction.accepted()) {
        std::cerr << input << ": " << prediction.refusal << '\n';
        return 1;
    }
    std::ofstream file(output, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char *>(prediction.bytes.data()), prediction.bytes.size());
    return file ? 0 : 1;
}

int strictCommand(int argc, char **argv)
{
    int status = 0;
    for (int i = 2; i < argc; ++i) {
        const auto record = readRecord(argv[i]);
        if (!record) {
            std::cerr << argv[i] << ": cannot be read\n";
            status = 1;
            continue;
        }
        const auto prediction = lumarex::roundtrip::predictResave(*record);
        if (!prediction.accepted()) {
            std::cout << argv[i] << ": refused by the editor: " << prediction.refusal << '\n';
            status = 1;
            continue;
        }
        const auto findings = lumarex::roundtrip::strictFindings(*record);
        std::cout << argv[i] << ": " << findings.size()
                  << " value(s) would not survive the editor\n";
        for (const auto &finding : findings)
            std::cout << "  " << finding.text() << '\n';
        if (!findings.empty())
            status = 1;
    }
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "explain" && argc <= 3)
        return explainCommand(argc, argv);
    if (command == "resave" && argc == 4)
        return resaveCommand(argv[2], argv[3]);
    if (command == "strict" && argc > 2)
        return strictCommand(argc, argv);
    std::cerr << "usage: roundtrip-driver explain [NAME] | resave FILE OUT | strict FILE...\n";
    return 2;
}
