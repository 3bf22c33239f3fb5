// protofix: converts one configuration section of a device between its record (as named fields or
// raw bytes), the request envelope around the device's table, and the F5 text of devices of the
// earlier protocol; or a batch of such requests, one a line.
#include "batch.h"
#include "catalog.h"
#include "cli.h"
#include "commands.h"
#include "section_table.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>

namespace {

using protofix::tool::Failure;
using protofix::tool::Invocation;
using protofix::tool::Result;

int Fail(const std::string& message, int status) {
    std::cerr << "protofix: " << protofix::tool::OneLine(message) << '\n';
    return status;
}

// Warnings first, then the output when the job converted (or the loss report of roundtrip), or
// the one line of its failure. Under --strict a warning is a failure: nothing is printed then.
int Print(const Result& result, bool strict) {
    for (const std::string& warning : result.warnings) {
        std::cerr << "protofix: warning: " << protofix::tool::OneLine(warning) << '\n';
    }
    if (result.status == protofix::tool::kConverted && strict && !result.warnings.empty()) {
        return Fail("--strict: " + std::to_string(result.warnings.size()) +
                        (result.warnings.size() == 1 ? " warning" : " warnings"),
                    protofix::tool::kRefused);
    }
    const bool report = result.outputName == "losses";
    if (result.status == protofix::tool::kConverted || report) std::cout << result.printed;
    if (result.status != protofix::tool::kConverted) return Fail(result.error, result.status);
    return result.status;
}

int Run(int argc, char** argv) {
    Invocation invocation;
    Failure failure;
    if (!protofix::tool::ParseCommandLine(argc, argv, invocation, failure)) {
        return Fail(failure.message, failure.status);
    }
    switch (invocation.what) {
        case Invocation::kHelp: std::cout << invocation.help; return protofix::tool::kConverted;
        case Invocation::kSections:
            if (invocation.markdown) {
                if (!protofix::tool::WriteCatalog(invocation.examples, std::cout, failure)) {
                    return Fail(failure.message, failure.status);
                }
            } else if (invocation.json && invocation.catalog) {
                if (!protofix::tool::WriteSectionsJson(invocation.examples, std::cout, failure)) {
                    return Fail(failure.message, failure.status);
                }
            } else if (invocation.json) {
                protofix::tool::ListSectionsJson(std::cout);
            } else {
                protofix::tool::ListSections(std::cout);
            }
            return protofix::tool::kConverted;
        case Invocation::kBatch:
            return protofix::tool::RunBatch(invocation.requests, invocation.maxInput, std::cout,
                                            std::cerr);
        case Invocation::kJob: break;
    }
    protofix::tool::Knowledge knowledge;
    return Print(protofix::tool::RunJob(invocation.job, knowledge), invocation.strict);
}

// Standard output written in full and closed: a full disk or a closed descriptor is an error of
// its own, so that the caller never takes lost output for a result. (A reader that leaves early
// ends the tool by SIGPIPE, as it ends any command of a pipeline.)
bool OutputWritten() {
    std::cout.flush();
    const bool written = std::cout.good() && std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    const int error = errno;
    if (std::fclose(stdout) != 0 || !written) {
        std::cerr << "protofix: standard output: cannot write: "
                  << std::strerror(written ? errno : error) << '\n';
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    int status = protofix::tool::kBadInput;
    try {
        status = Run(argc, argv);
    } catch (const std::exception& e) {
        // Out of memory outside a conversion, or a failure of a library outside the conversion.
        status = Fail(e.what(), protofix::tool::kBadInput);
    }
    return OutputWritten() ? status : protofix::tool::kBadInput;
}
