#include "roundtrip.h"

#include "conversions.h"
#include "editormodel.h"
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
        return "holds " + std::string(fieldInfo(step.field).name) + ", restored after it";
    }
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
        return {Why::NoItem, "no item " + std::to_string(record.value(step.field)) + " in the " +
                                 std::to_string(facts.itemCount) +
                                 "-item list: the box shows no item and saves 255"};
    case Restore::Check:
        return {Why::Converted, "a check box saves only 0 or 1"};
    case Restore::Value:
    case Restore::UnsignedValue:
    case Restore::TriggerSlot:
        return {Why::Clamped, "clamped to the range " + rangeText(facts)};
    case Restore::Hundredths: {
        const std::uint32_t stored = record.value(step.field);
        if (record.signedValue(step.field) < 0)
            return {Why::Clamped, "read back unsigned as " + realText(stored / 100.0, 2) +
                                      ", clamped to the range " + rangeText(facts)};
        if (esoOffsetFromField(stored) > facts.maximum)
            return {Why::Clamped, "clamped to the range " + rangeText(facts)};
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
        return {keptWhy(box, Why::NotRestored), "not restored: the box " + originText(box)};
    if (step->control != box.facts->objectName) {
        const ControlFacts &other = *model.control(step->control).facts;
        return {keptWhy(box, Why::AnotherBox), "restored into another box, \"" +
                                                   std::string(other.caption) + "\"; this box " +
                                                   originText(box)};
    }
    switch (model.outcome(number)) {
    case StepOutcome::NoMatch:
        return {keptWhy(box, Why::NoItem),
                "no item for the stored " +
                    std::string(step->how == Restore::NumberText ? "number" : "mode code") +
                    ": the box " + originText(box)};
    case StepOutcome::Skipped:
        return {keptWhy(box, Why::NotRestored),
                "not restored: trigger channel " +
                    std::to_string(record.value(Field::sbusTrigger)) + " is past the " +
                    std::to_string(kTriggerSlots) + " stored slots; the box " + originText(box)};
    case StepOutcome::NotRun:
    case StepOutcome::Set:
        break;
    }
    if (box.origin.kind == Origin::Kind::Restore && box.origin.step != number)
        return {Why::AnotherBox, "restored into another box: " + originText(box)};
    if (box.origin.kind == Origin::Kind::Rule)
        return {Why::PresetByRule, "the box " + originText(box)};
    return conversionLoss(*step, box, record);
}

std::string elementList(const std::vector<int> &elements)
{
    std::string text;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        std::size_t last = i;
        while (last + 1 < elements.size() && elements[last + 1] == elements[last] + 1)
            ++last;
        if (!text.empty())
            text += ", ";
        text += std::to_string(elements[i]);
        if (last > i)
            text += "-" + std::to_string(elements[last]);
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
    const std::uint32_t savedValue = saved.value(field);
    if (slot < kTriggerSlots && record.value(field, slot) != savedValue) {
        Cause verdict = whyChanged(field, model, box, record);
        findings.push_back(
            {field, verdict.why,
             "element " + std::to_string(slot) + " = " + std::to_string(record.value(field, slot)),
             shownText(box), std::to_string(savedValue), verdict.reason});
    }
    // Past the stored slots nothing is restored; otherwise only the selected slot is shown, and
    // every other slot that holds another value is lost.
    const bool restored = slot < kTriggerSlots;
    const std::uint32_t shownValue = restored ? record.value(field, slot) : savedValue;
    std::vector<int> lost;
    for (int element = 0; element < kTriggerSlots; ++element) {
        if (element != slot && record.value(field, element) != shownValue)
            lost.push_back(element);
    }
    if (lost.empty())
        return;
    if (!restored) {
        Cause cause = whyChanged(field, model, box, record);
        findings.push_back({field, cause.why, "elements " + elementList(lost), shownText(box),
                            std::to_string(savedValue), cause.reason});
        return;
    }
    findings.push_back(
        {field, Why::NoControl, "other values in elements " + elementList(lost),
         "only element " + std::to_string(slot) + ", the trigger channel's",
         "every element " + std::to_string(savedValue),
         "the form has one threshold for all " + std::to_string(kTriggerSlots) + " slots"});
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
            findings.push_back({info.field, Why::NoControl, storedText(record, info.field), "-",
                                storedText(saved, info.field),
                                "no control shows it; the editor writes its own value"});
            continue;
        }
        const ControlValue &box = model.control(pairing->control);
        Cause verdict = whyChanged(info.field, model, box, record);
        findings.push_back({info.field, verdict.why, storedText(record, info.field), shownText(box),
                            storedText(saved, info.field), verdict.reason});
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
