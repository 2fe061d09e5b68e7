// lxconfig cards [--format json]: the mounted memory cards and USB sticks, each with its mount
// point, device, file system, size, label, whether it is read-only, and what check says of the
// LXCONFIG.BIN at its root.

#include "cardscommand.h"

#include "jsonoutput.h"

namespace lxconfig {

namespace {

const char *verdictName(CardFile::Verdict verdict)
{
    switch (verdict) {
    case CardFile::None:
        return "none";
    case CardFile::Valid:
        return "valid";
    case CardFile::Refused:
        return "refused";
    case CardFile::Unreadable:
        return "unreadable";
    }
    return "none";
}

std::string cardText(const MountedCard &card, const CardFile &file)
{
    std::string text = card.mountPoint + '\n';
    text += "  device: " + card.device + '\n';
    text += "  file system: " + card.fileSystem + '\n';
    text += "  size: " + sizeText(card.size) + ", " + sizeText(card.free) + " free\n";
    text += "  label: " + (card.label.empty() ? std::string("none") : card.label) + '\n';
    text += std::string("  read-only: ") + (card.readOnly ? "yes" : "no") + '\n';
    text += std::string("  ") + kCardFileName + ": " + verdictName(file.verdict);
    if (!file.reason.empty())
        text += " (" + file.reason + ")";
    return text + '\n';
}

OrderedJson cardEntry(const MountedCard &card, const CardFile &file)
{
    OrderedJson entry;
    entry["mountPoint"] = card.mountPoint;
    entry["device"] = card.device;
    entry["fileSystem"] = card.fileSystem;
    entry["size"] = card.size;
    entry["free"] = card.free;
    entry["label"] = card.label.empty() ? OrderedJson(nullptr) : OrderedJson(card.label);
    entry["readOnly"] = card.readOnly;
    entry["file"] = {
        {"verdict", verdictName(file.verdict)},
        {"reason", file.reason.empty() ? OrderedJson(nullptr) : OrderedJson(file.reason)}};
    return entry;
}

} // namespace

int listCards(const SystemTables &tables, const Invocation &invocation, Output &output)
{
    const std::vector<MountedCard> cards = mountedCards(tables);
    const bool json = invocation.format == Format::Json;
    OrderedJson entries = OrderedJson::array();
    for (std::size_t i = 0; i < cards.size(); ++i) {
        const CardFile file = cardFile(cards[i].mountPoint);
        if (json)
            entries.push_back(cardEntry(cards[i], file));
        else
            output.out((i ? "\n" : "") + cardText(cards[i], file));
    }
    if (json)
        output.out(jsonText(entries));
    else if (cards.empty())
        output.out("No card is mounted.\n");
    return kExitSuccess;
}

int cardsCommand(const Invocation &invocation, Output &output)
{
    return listCards(SystemTables{}, invocation, output);
}

} // namespace lxconfig
