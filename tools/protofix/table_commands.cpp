// deserialize and roundtrip: a table converted once into the record (or merged into the F5
// text), the table the section gives back from it, and one walk of the two.
#include "command_support.h"
#include "diagnosis.h"
#include "losses.h"
#include "names.h"
#include "records.h"
#include "table_run.h"
#include "view_format.h"

namespace protofix::tool {
namespace {

std::string Into(const Job& job) { return job.TextMode() ? "the F5 text" : "the record"; }

// The answer when the section read nothing of the table.
Result NothingReadResult(const Job& job, const Section& section, const TableRun& run,
                         Knowledge& knowledge) {
    const std::string looks = DescribeInput(run.Table(), section, Role::kTable, knowledge);
    return Result::Failed(kRefused, job.input.name + ": section " + section.name +
                                        " read nothing of the table" +
                                        (looks.empty() ? "" : "; it looks like " + looks));
}

// The --base hint, where a base changes what the section reads.
std::string BaseHint(const Job& job, const Section& section, Knowledge& knowledge) {
    if (job.TextMode() || job.base.Given() || knowledge.Example(section, "base").isNull())
        return "";
    return " (the record started as zeros: give --base to name what the section reads)";
}

}  // namespace

Result DeserializeJob(const Job& job, const Section& section, Knowledge& knowledge) {
    TableRun run(job, section, knowledge);
    Result result;
    if (!run.Run(result)) return result;
    std::vector<bool> notRead;
    const std::vector<Loss> losses = run.Losses(notRead);
    if (run.NothingRead(losses, notRead)) return NothingReadResult(job, section, run, knowledge);
    run.Output(result);
    result.warnings = run.Warnings();
    for (std::size_t i = 0; i < losses.size(); ++i) {
        const Loss& loss = losses[i];
        const std::string at = job.input.name + ": " + FormatPath(loss.path) + ": ";
        if (loss.kind == Loss::kChanged) {
            result.warnings.push_back(at + Brief(loss.before) + " became " + Brief(loss.after) +
                                      " in " + Into(job));
        } else if (notRead[i]) {
            result.warnings.push_back(at + "not read by section " + section.name +
                                      run.Suggestion(loss) + BaseHint(job, section, knowledge));
        } else {
            result.warnings.push_back(at + Brief(loss.before) + " does not come back from " +
                                      Into(job));
        }
    }
    WarnUnusedOptions(
        job, section, run.Library(), {"--channel", "--id", "--standard", "--sub-mode", "--current"},
        [&](const Converter& other) { return run.SameAs(run.TableText(), other); },
        result.warnings);
    return result;
}

Result RoundtripTableJob(const Job& job, const Section& section, Knowledge& knowledge) {
    TableRun run(job, section, knowledge);
    Result result;
    if (!run.Run(result)) return result;
    std::vector<bool> notRead;
    const std::vector<Loss> losses = run.Losses(notRead);
    if (run.NothingRead(losses, notRead)) return NothingReadResult(job, section, run, knowledge);
    result.warnings = run.Warnings();
    result.outputName = "losses";
    result.output = Json::Value(Json::arrayValue);
    for (std::size_t i = 0; i < losses.size(); ++i) {
        const Loss& loss = losses[i];
        Json::Value entry;
        entry["path"] = PathJson(loss.path);
        entry["before"] = loss.before;
        std::string after;
        if (loss.kind == Loss::kChanged) {
            entry["after"] = loss.after;
            entry["loss"] = "changed";
            after = Brief(loss.after);
        } else if (notRead[i]) {
            entry["loss"] = "not read";
            after = "(absent): not read by the section" + run.Suggestion(loss);
        } else {
            entry["loss"] = "not given back";
            after = "(absent): not given back";
        }
        result.output.append(entry);
        result.printed += FormatPath(loss.path) + ": " + Brief(loss.before) + " -> " + after + "\n";
    }
    if (job.json) result.printed = FormatJson(result.output, job.pretty);
    if (losses.empty()) {
        if (!job.json)
            result.printed =
                "nothing lost: every value of the table came back from " + Into(job) + "\n";
        return result;
    }
    result.status = kRefused;
    result.error = job.input.name + ": " + std::to_string(losses.size()) +
                   (losses.size() == 1 ? " value does" : " values do") +
                   " not survive the round trip through " + Into(job);
    return result;
}

}  // namespace protofix::tool
