// protofix: converts one configuration section of a device between its record (as named fields or
// raw bytes), the request envelope around the device's table, and the F5 text of devices of the
// earlier protocol.
#include "commands.h"
#include "inputs.h"
#include "section_table.h"

#include <protofix/info.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <climits>
#include <exception>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace {

using protofix::tool::Options;

constexpr const char* kFooter =
    "Exit status: 0 the section converted, 1 it refused or no section has the name, 2 a usage or\n"
    "input error. Every error is one line on standard error. A file given as \"-\", or a missing\n"
    "RECORD or TABLE, is read from standard input.";

// The options of both conversions.
void AddCommonOptions(CLI::App& command, Options& options) {
    command.add_option("--channel", options.channel, "Channel number of the request (default 0)");
    command.add_option("--id", options.id, "Request id written in the envelope (default 0)");
    command
        .add_option("--standard", options.standard, "Video standard: pal (default) or ntsc")
        ->transform(CLI::CheckedTransformer(
            std::map<std::string, int>{{"pal", PROTOFIX_STANDARD_PAL},
                                       {"ntsc", PROTOFIX_STANDARD_NTSC}},
            CLI::ignore_case))
        ->option_text("pal|ntsc");
    command.add_option("--sub-mode", options.subMode, "Sub-mode of the request (default 0)");
    command
        .add_option("--current", options.current,
                    "The device's current reply {\"params\":{\"table\":...}} (sub-mode 1)")
        ->type_name("REPLY.json");
}

// Each input may be read once; standard input only once in all.
bool StandardInputOnce(const std::initializer_list<const std::string*> paths) {
    int uses = 0;
    for (const std::string* path : paths) {
        if (*path == protofix::tool::kStandardInput) ++uses;
    }
    return uses <= 1;
}

int Fail(const protofix::tool::Failure& failure) {
    std::cerr << "protofix: " << protofix::tool::OneLine(failure.message) << '\n';
    return failure.status;
}

int Run(int argc, char** argv) {
    CLI::App app{"Converts a configuration section of a device between its record, the device's "
                 "table and the F5 text of earlier-protocol devices.",
                 "protofix"};
    app.require_subcommand(1);
    app.footer(kFooter);

    CLI::App* sections = app.add_subcommand(
        "sections", "List every section: name, accepted modes, record type and record size");

    Options options;
    CLI::App* serialize = app.add_subcommand(
        "serialize", "Record (named-field view, or --hex bytes) or F5 text -> request envelope");
    serialize->add_option("SECTION", options.section, "Section name, in any case")->required();
    CLI::Option* record = serialize->add_option(
        "RECORD", options.input,
        "The record: its named-field view (JSON), or its raw bytes in hex (a text that starts "
        "with a hex digit)");
    record->type_name("RECORD.json");
    CLI::Option* serializeF5 =
        serialize->add_option("--f5", options.f5, "Convert this F5 text instead of a record")
            ->type_name("OLD.json");
    CLI::Option* serializeHex =
        serialize->add_flag("--hex", options.hex, "RECORD must be the record's raw bytes in hex");
    record->excludes(serializeF5);
    serializeHex->excludes(serializeF5);
    AddCommonOptions(*serialize, options);

    CLI::App* deserialize = app.add_subcommand(
        "deserialize", "Table -> record (named-field view, or --hex bytes), or merged into F5 text");
    deserialize->add_option("SECTION", options.section, "Section name, in any case")->required();
    deserialize->add_option("TABLE", options.input, "The device's table of the section (JSON)")
        ->type_name("TABLE.json");
    CLI::Option* deserializeF5 =
        deserialize
            ->add_option("--f5", options.f5,
                         "Merge the table into this F5 text and print the text")
            ->type_name("OLD.json");
    CLI::Option* base =
        deserialize
            ->add_option("--base", options.base,
                         "Start from this record instead of zero bytes (named-field view, or "
                         "raw bytes in hex)")
            ->type_name("RECORD.json");
    CLI::Option* deserializeHex =
        deserialize->add_flag("--hex", options.hex, "Print the record's raw bytes in hex");
    CLI::Option* capacity =
        deserialize
            ->add_option("--capacity", options.capacity,
                         "Capacity of the F5 text buffer in bytes (default " +
                             std::to_string(protofix::tool::kDefaultCapacity) +
                             ", or more to hold OLD and its NUL)")
            ->check(CLI::Range(1, INT_MAX))
            ->option_text("BYTES (with --f5)");
    base->excludes(deserializeF5);
    deserializeHex->excludes(deserializeF5);
    capacity->needs(deserializeF5);
    AddCommonOptions(*deserialize, options);

    // A first word that names no command would otherwise be reported as a missing command.
    if (argc > 1 && argv[1][0] != '-') {
        const std::vector<CLI::App*> commands = app.get_subcommands([](CLI::App*) { return true; });
        const std::string word = argv[1];
        if (std::none_of(commands.begin(), commands.end(),
                         [&](const CLI::App* command) { return command->get_name() == word; })) {
            std::cerr << "protofix: unknown command \"" << word
                      << "\"; the commands are sections, serialize and deserialize\n";
            return protofix::tool::kBadInput;
        }
    }

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        if (e.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) return app.exit(e);
        std::cerr << "protofix: " << protofix::tool::OneLine(e.what())
                  << " (protofix --help shows the usage)\n";
        return protofix::tool::kBadInput;
    }

    if (*sections) {
        protofix::tool::ListSections(std::cout);
        return protofix::tool::kConverted;
    }

    const bool textMode = !options.f5.empty();
    const bool once = *serialize
                          ? StandardInputOnce({textMode ? &options.f5 : &options.input,
                                               &options.current})
                          : StandardInputOnce({&options.input, &options.f5, &options.base,
                                               &options.current});
    if (!once) {
        return Fail({protofix::tool::kBadInput,
                     "standard input can be read only once: give the other inputs as files "
                     "(a missing RECORD or TABLE means standard input)"});
    }

    protofix::tool::Failure failure;
    const protofix::tool::Status status = *serialize
                                               ? protofix::tool::Serialize(options, std::cout, failure)
                                               : protofix::tool::Deserialize(options, std::cout, failure);
    std::cout.flush();
    return status == protofix::tool::kConverted ? status : Fail(failure);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const std::exception& e) {
        // Out of memory, or a failure of the JSON library outside the conversion itself.
        std::cerr << "protofix: " << protofix::tool::OneLine(e.what()) << '\n';
        return protofix::tool::kBadInput;
    }
}
