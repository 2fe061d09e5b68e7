#include "roundtrip.h"

#include "controltext.h"
#include "conversions.h"
#include "editormodel.h"
#include "formfields.h"
#include "restoreorder.h"
#include "valuetext.h"

namespace lumarex::roundtrip {

namespace {

using Why = Finding::Why;

ConfigRecord recordOf(const RecordBytes &bytes)
{
    return ConfigRecord::fromBytes(bytes.data(), bytes.size());
}

std::string refusalOf(Verdict verdict, const ConfigRecord &record)
{
    switch (verdict) {
    case Verdict::Accepted:
        return {};
    case Verdict::BadMagic:
        return "not a configuration file: it does not start with \"CONF\"";
    case Verdict::OtherVersion:
        return "format version " + std::to_string(record.value(Field::headerVersion)) +
               ", the editor reads only " + std::to_string(kFormatVersion);
    case Verdict::ChecksumMismatch:
        return "checksum mismatch: stored " + std::to_string(record.storedChecksum()) +
               ", computed " + std::to_string(record.computedChecksum());
    }
    return {};
}

const RestoreStep *restoreStepOf(Field field, int *number)
{
    for (int i = 0; i < restoreStepCount(); ++i) {
        if (restoreSteps()[i].field == field) {
            *number = i + 1;
            return &restoreSteps()[i];
        }
    }
    return nullptr;
}

// Where a box's current value came from, in words, and whether that was a rule.
std::string originText(const ControlValue &control)
{
    switch (control.origin.kind) {
    case Origin::Kind::Start:
        return "keeps its start value";
    case Origin::Kind::Rule:
        return "keeps what the " + std::string(control.origin.rule->name) + " preset";
    case Origin::Kind::Restore: {
        const RestoreStep &step = restoreSteps()[control.origin.step - 1];
        return "holds " + std::string(fieldInfo(step.field).name) + ", restored into it afterwards";
    }
    case Origin::Kind::Operator:
        return "holds what the operator chose";
    }
    return {};
}

Why keptWhy(const ControlValue &control, Why otherwise)
{
    return control.origin.kind == Origin::Kind::Rule ? Why::PresetByRule : otherwise;
}

struct Cause
{
    Why why;
    std::string reason;
};

// Why a value restored into its own box comes back changed, from how the box holds it.
Cause conversionLoss(const RestoreStep &step, const ControlValue &box, const ConfigRecord &record)
{
    const ControlFacts &facts = *box.facts;
    switch (step.how) {
    case Restore::Index:
        return {Why::NoItem, "the list has items 0 to " + std::to_string(facts.itemCount - 1) +
                                 "; the box shows none and saves 255"};
    case Restore::Check:
        return {Why::Converted, "a check box saves 1 for any value but 0"};
    case Restore::Value:
    case Restore::UnsignedValue:
    case Restore::TriggerSlot:
        return {Why::Clamped, "the box holds " + rangeText(facts)};
    case Restore::Hundredths: {
        const std::uint32_t stored = record.value(step.field);
        if (record.signedValue(step.field) < 0)
            return {Why::Clamped, "read back unsigned as " +
                                      decimalText(esoOffsetFromField(stored), facts.decimals) +
                                      "; the box holds " + rangeText(facts)};
        if (esoOffsetFromField(stored) > facts.maximum)
            return {Why::Clamped, "the box holds " + rangeText(facts)};
        return {Why::Converted,
                "the box shows " + shownText(box) + ", saved in hundredths cut toward zero"};
    }
    case Restore::NumberText:
    case Restore::LineText:
    case Restore::Ext0Code:
    case Restore::Ext1Code:
        break;
    }
    return {Why::Converted, "changed by the box"};
}

Cause whyChanged(Field field, const EditorModel &model, const ControlValue &box,
                 const ConfigRecord &record)
{
    int number = 0;
    const RestoreStep *step = restoreStepOf(field, &number);
    if (!step)
        return {keptWhy(box, Why::NotRestored),
                "Read from file does not restore this box; it " + originText(box)};
    if (step->control != box.facts->objectName) {
        const ControlFacts &other = *model.control(step->control).facts;
        return {keptWhy(box, Why::AnotherBox), "the value goes into \"" +
                                                   std::string(other.caption) + "\"; this box " +
                                                   originText(box)};
    }
    switch (model.outcome(number)) {
    case StepOutcome::NoMatch:
        return {keptWhy(box, Why::NoItem),
                std::string(step->how == Restore::NumberText ? "no item reads "
                                                             : "no item has mode code ") +
                    std::to_string(record.value(field)) + "; the box " + originText(box)};
    case StepOutcome::Skipped:
        return {keptWhy(box, Why::NotRestored),
                "trigger channel " + std::to_string(record.value(Field::sbusTrigger)) +
                    " is past the " + std::to_string(kTriggerSlots) +
                    " stored slots, so the box is not set; it " + originText(box)};
    case StepOutcome::NotRun:
    case StepOutcome::Set:
        break;
    }
    if (box.origin.kind == Origin::Kind::Restore && box.origin.step != number)
        return {Why::AnotherBox, "the box " + originText(box)};
    if (box.origin.kind == Origin::Kind::Rule)
        return {Why::PresetByRule, "the box " + originText(box)};
    return conversionLoss(*step, box, record);
}

// "5 in element 0, 700 in elements 1-3": the elements' values, runs of equal neighbours joined.
std::string valuesIn(const ConfigRecord &record, Field field, const std::vector<int> &elements)
{
    std::string text;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const std::uint32_t value = record.value(field, elements[i]);
        std::size_t last = i;
        while (last + 1 < elements.size() && elements[last + 1] == elements[last] + 1 &&
               record.value(field, elements[last + 1]) == value)
            ++last;
        text += (text.empty() ? "" : ", ") + std::to_string(value) +
                (last > i ? " in elements " + std::to_string(elements[i]) + "-" +
                                std::to_string(elements[last])
                          : " in element " + std::to_string(elements[i]));
        i = last;
    }
    return text;
}

void findArrayLosses(Field field, const EditorModel &model, const ConfigRecord &record,
                     const ConfigRecord &saved, std::vector<Finding> &findings)
{
    const FormField &pairing = *formFieldOf(field);
    const ControlValue &box = model.control(pairing.control);
    const auto slot = static_cast<int>(record.value(Field::sbusTrigger));
    const std::string savedText = std::to_string(saved.value(field)) + " in every element";
    // Past the stored slots nothing is restored; otherwise only the slot of the trigger channel
    // is shown, and every other slot that holds another value is lost.
    const bool restored = slot < kTriggerSlots;
    const std::uint32_t shownValue = restored ? record.value(field, slot) : saved.value(field);
    if (restored && shownValue != saved.value(field)) {
        const Cause cause = whyChanged(field, model, box, record);
        findings.push_back({field, cause.why, valuesIn(record, field, {slot}), shownText(box),
                            savedText, cause.reason});
    }
    std::vector<int> lost;
    for (int element = 0; element < kTriggerSlots; ++element) {
        if (element != slot && record.value(field, element) != shownValue)
            lost.push_back(element);
    }
    if (lost.empty())
        return;
    if (!restored) {
        const Cause cause = whyChanged(field, model, box, record);
        findings.push_back({field, cause.why, valuesIn(record, field, lost), shownText(box),
                            savedText, cause.reason});
        return;
    }
    findings.push_back({field, Why::NoControl, valuesIn(record, field, lost),
                        shownText(box) + " (element " + std::to_string(slot) + ")", savedText,
                        "one box serves all " + std::to_string(kTriggerSlots) +
                            " slots and shows the trigger channel's"});
}

} // namespace

ResavePrediction predictResave(const RecordBytes &bytes)
{
    const ConfigRecord record = recordOf(bytes);
    ResavePrediction prediction;
    prediction.verdict = editorVerdict(record);
    prediction.refusal = refusalOf(prediction.verdict, record);
    if (!prediction.accepted())
        return prediction;
    EditorModel model;
    model.restore(record);
    prediction.bytes = model.save().bytes();
    return prediction;
}

std::vector<Finding> strictFindings(const RecordBytes &bytes)
{
    std::vector<Finding> findings;
    const ConfigRecord record = recordOf(bytes);
    if (editorVerdict(record) != Verdict::Accepted)
        return findings;
    EditorModel model;
    model.restore(record);
    const ConfigRecord saved = model.save();

    for (const FieldInfo &info : fieldTable()) {
        if (info.field == Field::crc)
            continue; // recomputed over whatever else changed
        const FormField *pairing = formFieldOf(info.field);
        if (pairing && info.elementCount() > 1) {
            findArrayLosses(info.field, model, record, saved, findings);
            continue;
        }
        if (record.value64(info.field) == saved.value64(info.field))
            continue;
        if (!pairing) {
            findings.push_back({info.field, Why::NoControl, storedText(record, info.field),
                                "nothing", storedText(saved, info.field),
                                "Read from file ignores it and Write to file saves its own"});
            continue;
        }
        const ControlValue &box = model.control(pairing->control);
        const Cause cause = whyChanged(info.field, model, box, record);
        findings.push_back({info.field, cause.why, storedText(record, info.field), shownText(box),
                            storedText(saved, info.field), cause.reason});
    }
    return findings;
}

std::string_view whyName(Finding::Why why)
{
    switch (why) {
    case Why::NoItem:
        return "no item";
    case Why::Clamped:
        return "clamped to the range";
    case Why::Converted:
        return "changed by the conversion";
    case Why::AnotherBox:
        return "restored into another box";
    case Why::PresetByRule:
        return "preset by a rule";
    case Why::NotRestored:
        return "not restored";
    case Why::NoControl:
        return "no control shows it";
    }
    return {};
}

std::string Finding::text() const
{
    const FieldInfo &info = fieldInfo(field);
    return std::string(info.name) + " (offset " + std::to_string(info.offset) + "): stored " +
           stored + ", shown " + shown + ", saved back " + saved + "; " +
           std::string(whyName(why)) + ": " + reason;
}

} // namespace lumarex::roundtrip
