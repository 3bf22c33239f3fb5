#include "commands.h"

#include "command_support.h"
#include "diagnosis.h"
#include "names.h"
#include "records.h"
#include "view_format.h"

#include <describe/describe.h>

#include <algorithm>
#include <new>

namespace protofix::tool {
namespace {

// ---- serialize ------------------------------------------------------------------------------------

// A record that is not a view of the section's record may be another input altogether.
Result NotARecord(const Job& job, const Section& section, const Failure& failure,
                  Knowledge& knowledge) {
    Json::Value input;
    Failure ignored;
    if (job.hex || !ParseSource(job.input, input, ignored)) {
        return Failed(failure);
    }
    const std::string looks = DescribeInput(input, section, Role::kRecord, knowledge);
    return Result::Failed(kBadInput,
                          failure.message + (looks.empty() ? "" : "; it looks like " + looks));
}

Result SerializeJob(const Job& job, const Section& section, Knowledge& knowledge) {
    const std::string modes = ModeRefusal(job, section);
    if (!modes.empty()) return Result::Failed(kRefused, modes);
    const Converter converter(section.name, job.TextMode(), Settings::Of(job));
    Failure failure;
    Bytes record;
    std::string envelope;
    if (job.TextMode()) {
        Json::Value document;
        if (!ParseSource(job.f5, document, failure)) return Failed(failure);
        if (F5Member(document, section) == nullptr) {
            return NoMember(job.f5, section, document,
                            std::string("section ") + section.name + " reads nothing of it",
                            knowledge);
        }
        try {
            envelope = converter.PacketText(job.f5.text);
        } catch (const Json::Exception&) {
            const auto throws = [&](const Json::Value& text) {
                try {
                    converter.PacketText(Json::FastWriter().write(text));
                    return false;
                } catch (const Json::Exception&) {
                    return true;
                }
            };
            return Result::Failed(
                kBadInput,
                WrongKind(job.f5.name, section,
                          FindCulprit(document, throws, &knowledge.ExampleSchema(section, "f5")),
                          knowledge.ExampleSchema(section, "f5")));
        }
    } else {
        record.assign(section.recordSize, 0);
        if (!ApplyRecord(section, job.input, job.hex, record, failure)) {
            return NotARecord(job, section, failure, knowledge);
        }
        envelope = converter.Packet(record);
    }
    Json::Value root;
    Json::Reader().parse(envelope, root, false);
    const Json::Value& table = root["params"]["table"];
    if (!root["result"].isBool() || !root["result"].asBool()) {
        return Refused(job, section,
                       job.TextMode()
                           ? job.f5.name + ": section " + section.name + " refused the F5 text"
                           : job.input.name + ": section " + section.name + " refused the record",
                       nullptr);
    }
    Result result;
    result.outputName = job.tableOnly ? "table" : "envelope";
    if (job.tableOnly) {
        result.output = table;
    } else {
        result.output.swap(root);  // table still names the same member, now the output's
    }
    if (job.print) {
        result.printed =
            job.tableOnly ? FormatJson(table, job.pretty) : FormatJsonText(envelope, job.pretty);
    }
    WarnUnusedOptions(
        job, section, converter, {"--standard", "--sub-mode", "--current"},
        [&](const Converter& other) {
            try {
                const std::string again =
                    job.TextMode() ? other.PacketText(job.f5.text) : other.Packet(record);
                return EnvelopeTable(again) == table;
            } catch (const Json::Exception&) {
                return false;
            }
        },
        result.warnings);
    return result;
}

// ---- view ---------------------------------------------------------------------------------------

Result ViewJob(const Job& job, const Section& section) {
    if (!section.HasRecord()) {
        return Result::Failed(
            kRefused, std::string("section ") + section.name + " has no record (F5 text only)");
    }
    Failure failure;
    const describe::Descriptor* descriptor = ViewOf(section, failure);
    if (descriptor == nullptr) return Failed(failure);
    Bytes record(section.recordSize, 0);
    if (!ApplyRecord(section, job.input, false, record, failure)) return Failed(failure);
    for (const std::string& field : job.without) {
        const bool named = std::any_of(descriptor->fields.begin(), descriptor->fields.end(),
                                       [&](const describe::Field& f) { return f.name == field; });
        if (!named) {
            return Result::Failed(
                kBadInput, "--without " + field + ": " + section.record + " has no such field");
        }
    }
    Result result;
    result.outputName = "record";
    result.output = RecordView(section, record, job.raw, job.without);
    if (job.print) result.printed = PrintedRecord(section, record, job);
    return result;
}

}  // namespace

// ---- shared ---------------------------------------------------------------------------------------

std::string ModeRefusal(const Job& job, const Section& section) {
    if (job.TextMode() && !section.AcceptsText()) {
        return job.f5.name + ": section " + section.name +
               " does not accept F5 text (it converts records only)";
    }
    if (!job.TextMode() && (!section.HasRecord() || !section.AcceptsRecord())) {
        return std::string("section ") + section.name +
               " converts F5 text only; give the device's text with --f5";
    }
    return "";
}

Result Refused(const Job& job, const Section& section, const std::string& what,
               const Json::Value* table) {
    const std::string reason = RefusalReason(section, job, table);
    if (!reason.empty()) return Result::Failed(kRefused, what + ": " + reason);
    return Result::Failed(kRefused, what + (table != nullptr ? " (a key it requires is missing or "
                                                               "holds a value it refuses)"
                                                             : ""));
}

void WarnUnusedOptions(const Job& job, const Section& section, const Converter& converter,
                       std::initializer_list<const char*> candidates,
                       const std::function<bool(const Converter&)>& sameAs,
                       std::vector<std::string>& warnings) {
    for (const char* option : candidates) {
        if (std::find(job.given.begin(), job.given.end(), option) == job.given.end()) continue;
        if (sameAs(converter.WithDefault(option))) {
            warnings.push_back(std::string(option) + " made no difference to section " +
                               section.name);
        }
    }
}

bool BufferCapacity(const Job& job, std::size_t& capacity, Result& failure) {
    const std::size_t needed = job.f5.text.size() + 1;
    capacity = job.capacity > 0 ? static_cast<std::size_t>(job.capacity)
                                : std::max(static_cast<std::size_t>(kDefaultCapacity), needed);
    if (capacity >= needed) return true;
    failure = Result::Failed(
        kBadInput, job.f5.name + ": the F5 text needs " + std::to_string(needed) +
                       " bytes with its NUL, more than --capacity " + std::to_string(capacity));
    return false;
}

void ReportLosses(const Job& job, const std::vector<Loss>& losses, const LossReport& report,
                  Result& result) {
    result.outputName = "losses";
    result.output = Json::Value(Json::arrayValue);
    for (std::size_t i = 0; i < losses.size(); ++i) {
        const Loss& loss = losses[i];
        Json::Value entry;
        entry["path"] = PathJson(loss.path);
        entry["before"] = loss.before;
        const bool changed = loss.kind == Loss::kChanged;
        if (changed) entry["after"] = loss.after;
        entry["loss"] = changed ? "changed" : report.kind(i);
        result.output.append(entry);
        if (!job.print) continue;
        result.printed += FormatPath(loss.path) + ": " + Brief(loss.before) + " -> " +
                          (changed ? Brief(loss.after) : "(absent): " + report.label(i)) + "\n";
    }
    if (job.print && job.json) {
        result.printed = FormatJson(result.output, job.pretty);
    } else if (job.print && losses.empty()) {
        result.printed = report.nothingLost + "\n";
    }
    if (losses.empty()) return;
    result.status = kRefused;
    result.error = report.error(losses.size());
}

Result NoMember(const Source& f5, const Section& section, const Json::Value& document,
                const std::string& consequence, Knowledge& knowledge) {
    std::string member;
    for (const std::string& name : F5MemberPath(section))
        member += (member.empty() ? "" : ".") + name;
    const std::string misspelt = MisspeltF5Member(document, section);
    std::string message =
        f5.name + ": the F5 text has no \"" + member + "\" member: " + consequence;
    if (!misspelt.empty()) {
        message +=
            "; its \"" + misspelt + "\" is spelt otherwise than the device's \"" + member + "\"";
    } else {
        const std::string looks = DescribeInput(document, section, Role::kF5, knowledge);
        if (!looks.empty()) message += "; it looks like " + looks;
    }
    return Result::Failed(kRefused, message);
}

Result RunJob(const Job& job, Knowledge& knowledge) {
    const Section* section = FindSection(job.section);
    if (section == nullptr) return Result::Failed(kBadInput, UnknownSection(job.section));
    Failure failure;
    Json::Value reply;
    if (job.current.Given() && !ParseSource(job.current, reply, failure)) {
        return Failed(failure);
    }
    try {
        switch (job.command) {
            case Command::kSerialize: return SerializeJob(job, *section, knowledge);
            case Command::kDeserialize: return DeserializeJob(job, *section, knowledge);
            case Command::kRoundtrip: return RoundtripJob(job, *section, knowledge);
            case Command::kView: return ViewJob(job, *section);
        }
    } catch (const std::bad_alloc&) {
        const Source& input = job.input.Given() ? job.input : job.f5;
        return Result::Failed(kBadInput, input.name + ": out of memory converting it");
    }
    return Result::Failed(kBadInput, "no such command");
}

}  // namespace protofix::tool
