// lxconfig write FILE [CARD]: puts a file that check finds valid on a memory card as
// LXCONFIG.BIN, reads it back from the card and says whether the card can be pulled. With
// --check-only it says what would change on the card instead, in diff's words.

#include "cardlist.h"
#include "cardwrite.h"
#include "commandfiles.h"
#include "commands.h"
#include "recorddifference.h"
#include "recordfile.h"
#include "safelyremoved.h"

#include <algorithm>
#include <sys/stat.h>

namespace lxconfig {

namespace {

// A file bigger than this is no configuration the camera reads.
constexpr std::size_t kLargestFile = 1 << 20;

// The card named, or the only one mounted; a failure (without a file) when none or several are.
Result<std::string> chosenCard(const Invocation &invocation)
{
    if (invocation.arguments.size() > 1) {
        // "CARD/" as a shell completes it names the same card; the file is CARD/LXCONFIG.BIN.
        std::string card = invocation.arguments[1];
        while (card.size() > 1 && card.back() == '/')
            card.pop_back();
        return card;
    }
    const std::vector<MountedCard> cards = mountedCards();
    if (cards.size() == 1)
        return cards.front().mountPoint;
    if (cards.empty()) {
        return Failure{{},
                       "no card is mounted: put one in, or name the folder where it is mounted "
                       "(lxconfig write FILE CARD)"};
    }
    std::string names;
    for (const MountedCard &card : cards)
        names += "\n  " + card.mountPoint;
    return Failure{
        {},
        std::to_string(cards.size()) +
            " cards are mounted; name the one to write (lxconfig write FILE CARD):" + names};
}

// What the card's file would become.
void printChanges(const std::string &target, const std::string &card, const std::string &given,
                  const lumarex::ConfigRecord &record, Output &output)
{
    const CardFile old = cardFile(card);
    if (old.verdict == CardFile::None) {
        output.out(target + ": none yet; write puts " + given + " there\n");
        return;
    }
    if (old.verdict == CardFile::Unreadable) {
        output.out(target + ": " + old.reason + "; write replaces it with " + given + "\n");
        return;
    }
    const Result<RecordFile> file = readRecordFile(target);
    const lumarex::ConfigRecord before = file ? file->record : recordFileOf({}, 0).record;
    // The checksum follows from the settings; the window never shows it.
    std::vector<ElementDifference> differences = recordDifferences(before, record);
    differences.erase(std::remove_if(differences.begin(), differences.end(),
                                     [](const ElementDifference &difference) {
                                         return difference.info->field == lumarex::Field::crc;
                                     }),
                      differences.end());
    const std::string refused = old.verdict == CardFile::Refused ? " (" + old.reason + ")" : "";
    if (differences.empty()) {
        output.out(target + refused + ": no setting differs from " + given + "\n");
        return;
    }
    output.out(target + refused + ": " + std::to_string(differences.size()) +
               (differences.size() == 1 ? " value changes" : " values change") + "\n");
    for (const ElementDifference &difference : differences)
        output.out("  " + differenceLine(before, record, difference) + "\n");
}

// The card's file as it is now, or nothing when it cannot be read, for saying afterwards
// whether a failure left it alone.
std::optional<std::string> bytesIfReadable(const std::string &target)
{
    Result<std::string> bytes = readTextFile(target, kLargestFile);
    if (!bytes)
        return std::nullopt;
    return std::move(*bytes);
}

} // namespace

int writeCommand(const Invocation &invocation, Output &output)
{
    const std::string &given = invocation.arguments.at(0);
    const Result<std::string> bytes = readTextFile(given, kLargestFile);
    if (!succeeded(bytes, output))
        return kExitFailure;
    const Result<lumarex::ConfigRecord> record =
        checkedRecord(given, recordFileOf(*bytes, bytes->size()), Checks::Require, output);
    if (!succeeded(record, output))
        return kExitFailure;

    const Result<std::string> card = chosenCard(invocation);
    if (!succeeded(card, output))
        return kExitFailure;
    const std::optional<MountedCard> mount = mountAt(*card);
    struct stat cardState;
    if (!mount || ::stat(card->c_str(), &cardState) != 0) {
        output.error(*card + ": is not where a card is mounted (was it removed?); nothing is "
                             "written");
        return kExitFailure;
    }
    const std::string target = *card + "/" + kCardFileName;
    if (invocation.checkOnly) {
        printChanges(target, *card, given, *record, output);
        return kExitSuccess;
    }

    const std::optional<std::string> before = bytesIfReadable(target);
    if (const Done written =
            writeToCard(target, *bytes, *card, cardState.st_dev, invocation.backup);
        !written) {
        std::string line = written.failure().message();
        const std::optional<std::string> after = bytesIfReadable(target);
        if (before && after == before)
            line += std::string("; the card's old ") + kCardFileName + " is as it was";
        else if (before && !after)
            line += std::string("; the card's ") + kCardFileName + " cannot be read now";
        else if (before)
            line += std::string("; the card's old ") + kCardFileName + " could not be kept";
        output.error(line);
        return kExitFailure;
    }
    output.out(target + ": written and verified\n");
    return safelyRemoved(*card, mount->device, invocation.eject, output) ? kExitSuccess
                                                                         : kExitFailure;
}

} // namespace lxconfig
