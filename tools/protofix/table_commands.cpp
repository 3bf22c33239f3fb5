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

// The --base hint, where a base changes what the section reads.
std::string BaseHint(const Job& job, const Section& section, Knowledge& knowledge) {
    if (job.TextMode() || job.base.Given() || knowledge.Example(section, "base").isNull())
        return "";
    return " (the record started as zeros: give --base to name what the section reads)";
}

// The table converted and compared with what comes back; false, with the result to give, when
// it did not convert or the section read nothing of it.
bool Compared(TableRun& run, const Job& job, const Section& section, Knowledge& knowledge,
              std::vector<Loss>& losses, std::vector<bool>& notRead, Result& result) {
    if (!run.Run(result)) return false;
    losses = run.Losses(notRead);
    if (!run.NothingRead(losses, notRead)) return true;
    const std::string looks = DescribeInput(run.Table(), section, Role::kTable, knowledge);
    result = Result::Failed(kRefused, job.input.name + ": section " + section.name +
                                          " read nothing of the table" +
                                          (looks.empty() ? "" : "; it looks like " + looks));
    return false;
}

}  // namespace

Result DeserializeJob(const Job& job, const Section& section, Knowledge& knowledge) {
    TableRun run(job, section, knowledge);
    Result result;
    std::vector<Loss> losses;
    std::vector<bool> notRead;
    if (!Compared(run, job, section, knowledge, losses, notRead, result)) return result;
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
    std::vector<Loss> losses;
    std::vector<bool> notRead;
    if (!Compared(run, job, section, knowledge, losses, notRead, result)) return result;
    result.warnings = run.Warnings();
    LossReport report;
    report.nothingLost = "nothing lost: every value of the table came back from " + Into(job);
    report.label = [&](std::size_t i) {
        return notRead[i] ? "not read by the section" + run.Suggestion(losses[i])
                          : std::string("not given back");
    };
    report.kind = [&](std::size_t i) { return notRead[i] ? "not read" : "not given back"; };
    report.error = [&](std::size_t count) {
        return job.input.name + ": " + std::to_string(count) +
               (count == 1 ? " value does" : " values do") +
               " not survive the round trip through " + Into(job);
    };
    ReportLosses(job, losses, report, result);
    return result;
}

}  // namespace protofix::tool
