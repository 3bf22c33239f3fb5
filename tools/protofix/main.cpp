// protofix: converts one configuration section of a device between its record (as named fields or
// raw bytes), the request envelope around the device's table, and the F5 text of devices of the
// earlier protocol.
#include "commands.h"
#include "inputs.h"
#include "section_table.h"

#include <protofix/info.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <climits>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <limits>
#include <string>
#include <vector>

#ifndef PROTOFIX_VERSION
#define PROTOFIX_VERSION "unknown"
#endif

namespace {

using protofix::tool::Failure;
using protofix::tool::Options;

constexpr const char* kFooter =
    "Exit status: 0 the section converted, 1 it refused, no section has the name, something was\n"
    "lost (roundtrip) or a warning was given under --strict, 2 a usage or input error. Every\n"
    "error is one line on standard error; warnings are lines of their own there. A file given\n"
    "as \"-\", or a missing RECORD or TABLE, is read from standard input.\n"
    "--standard is read by the Encode section only, --sub-mode and --current by General and\n"
    "Locales only; the tool warns when an option made no difference.";

// The request options, read as text and checked here so that a wrong value is explained in the
// tool's words.
struct RawOptions {
    std::string channel;
    std::string id;
    std::string standard;
    std::string subMode;
    std::string capacity;
    std::string maxInput;
    bool strict = false;
};

struct CommonOptions {
    CLI::Option* channel = nullptr;
    CLI::Option* id = nullptr;
    CLI::Option* standard = nullptr;
    CLI::Option* subMode = nullptr;
    CLI::Option* current = nullptr;
};

// The largest input --max-input allows: what the library's lengths (an int) can hold.
constexpr std::size_t kLargestInput = static_cast<std::size_t>(INT_MAX);

// "--max-input SIZE" on a command that reads files.
void AddMaxInput(CLI::App& command, RawOptions& raw) {
    command
        .add_option("--max-input", raw.maxInput,
                    "Refuse an input file larger than this (default 64M; k, M, G as powers of "
                    "1024); it also bounds --capacity")
        ->type_name("SIZE");
}

CommonOptions AddCommonOptions(CLI::App& command, Options& options, RawOptions& raw) {
    CommonOptions added;
    added.channel =
        command.add_option("--channel", raw.channel, "Channel number of the request (default 0)")
            ->type_name("INT");
    added.id = command.add_option("--id", raw.id, "Request id written in the envelope (default 0)")
                   ->type_name("UINT");
    added.standard = command
                         .add_option("--standard", raw.standard,
                                     "Video standard, read by Encode: pal (default) or ntsc")
                         ->type_name("pal|ntsc");
    added.subMode = command
                        .add_option("--sub-mode", raw.subMode,
                                    "Sub-mode, read by General and Locales (default 0)")
                        ->type_name("INT");
    added.current = command
                        .add_option("--current", options.current,
                                    "The device's current reply {\"params\":{\"table\":...}}, "
                                    "read by General and Locales in sub-mode 1")
                        ->type_name("REPLY.json");
    command.add_flag("--pretty", options.pretty,
                     "Indent the JSON printed (default: compact, as "
                     "the device reads it)");
    command.add_flag("--strict", raw.strict, "Exit with status 1 when there is any warning");
    AddMaxInput(command, raw);
    return added;
}

// A whole number in decimal, with no blank before or after it.
bool ParseInteger(const std::string& option, const std::string& text, long long min, long long max,
                  long long& value, Failure& failure) {
    errno = 0;
    char* end = nullptr;
    const bool starts = !text.empty() && (std::isdigit(static_cast<unsigned char>(text[0])) != 0 ||
                                          text[0] == '-' || text[0] == '+');
    const long long number = starts ? std::strtoll(text.c_str(), &end, 10) : 0;
    if (!starts || *end != '\0' || errno != 0 || number < min || number > max) {
        failure = {protofix::tool::kBadInput,
                   option + " " + protofix::tool::ShownValue(text) + ": expected a whole number from " + std::to_string(min) +
                       " to " + std::to_string(max)};
        return false;
    }
    value = number;
    return true;
}

// A whole-number request option, when given: checked, stored and named in options.given.
template <class Field>
bool ReadNumberOption(const CLI::Option* option, const std::string& text, Field& field,
                      Options& options, Failure& failure) {
    if (option->count() == 0) return true;
    long long number = 0;
    const std::string name = option->get_name();
    if (!ParseInteger(name, text, std::numeric_limits<Field>::min(),
                      std::numeric_limits<Field>::max(), number, failure)) {
        return false;
    }
    field = static_cast<Field>(number);
    options.given.push_back(name);
    return true;
}

// The checked request options, and the names of those that were given.
bool ReadRawOptions(const RawOptions& raw, const CommonOptions& added, Options& options,
                    Failure& failure) {
    if (!ReadNumberOption(added.channel, raw.channel, options.channel, options, failure) ||
        !ReadNumberOption(added.id, raw.id, options.id, options, failure) ||
        !ReadNumberOption(added.subMode, raw.subMode, options.subMode, options, failure)) {
        return false;
    }
    if (added.standard->count() > 0) {
        std::string word = raw.standard;
        std::transform(word.begin(), word.end(), word.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        if (word != "pal" && word != "ntsc") {
            failure = {protofix::tool::kBadInput,
                       "--standard " + raw.standard + ": expected pal or ntsc"};
            return false;
        }
        options.standard = word == "ntsc" ? PROTOFIX_STANDARD_NTSC : PROTOFIX_STANDARD_PAL;
        options.given.emplace_back("--standard");
    }
    if (added.current->count() > 0) options.given.emplace_back("--current");
    return true;
}

// Each input may be read once; standard input only once in all.
bool StandardInputOnce(const std::initializer_list<const std::string*> paths) {
    int uses = 0;
    for (const std::string* path : paths) {
        if (*path == protofix::tool::kStandardInput) ++uses;
    }
    return uses <= 1;
}

int Fail(const Failure& failure) {
    std::cerr << "protofix: " << protofix::tool::OneLine(failure.message) << '\n';
    return failure.status;
}

// The option's name as written: "--capacity" of "--capacity=3".
std::string OptionName(const std::string& argument) {
    return argument.substr(0, argument.find('='));
}

// An option given to a command that does not take it, named with the commands that do.
bool MisplacedOption(CLI::App& app, const CLI::App& command, int argc, char** argv,
                     Failure& failure) {
    for (int i = 2; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--") break;
        if (argument.size() < 3 || argument.compare(0, 2, "--") != 0) continue;
        const std::string name = OptionName(argument);
        if (name == "--help" || command.get_option_no_throw(name) != nullptr) continue;
        std::string owners;
        for (const CLI::App* other : app.get_subcommands([](CLI::App*) { return true; })) {
            if (other->get_option_no_throw(name) != nullptr) {
                owners += (owners.empty() ? "" : ", ") + other->get_name();
            }
        }
        failure = {protofix::tool::kBadInput,
                   owners.empty()
                       ? "unknown option " + name + "; protofix " + command.get_name() +
                             " --help lists its options"
                       : name + " is an option of " + owners + ", not of " + command.get_name()};
        return true;
    }
    return false;
}

// A parse error of the command line in the tool's words.
std::string UsageMessage(const CLI::ParseError& e) {
    std::string what = protofix::tool::OneLine(e.what());
    const std::size_t excludes = what.find(" excludes ");
    if (excludes != std::string::npos) {
        return what.substr(0, excludes) + " and " + what.substr(excludes + 10) +
               " cannot be given together";
    }
    const std::size_t requires_ = what.find(" requires ");
    if (requires_ != std::string::npos) {
        return what.substr(0, requires_) + " goes only with " + what.substr(requires_ + 10);
    }
    if (dynamic_cast<const CLI::ExtrasError*>(&e) != nullptr) {
        const std::size_t colon = what.find(": ");
        return "unexpected argument" +
               (colon != std::string::npos ? ": " + what.substr(colon + 2) : std::string());
    }
    if (what.find("SECTION") != std::string::npos) {
        return "a SECTION is required ('protofix sections' lists them)";
    }
    if (what.find("subcommand") != std::string::npos) {
        return "a command is required: sections, serialize, deserialize, roundtrip or view";
    }
    return what;
}

// Whether the command that ran was given the option.
bool Given(const CLI::App& app, const std::string& option) {
    for (const CLI::App* command : app.get_subcommands()) {
        const CLI::Option* given = command->get_option_no_throw(option);
        if (given != nullptr && given->count() > 0) return true;
    }
    return false;
}

int Run(int argc, char** argv) {
    CLI::App app{
        "Converts a configuration section of a device between its record, the device's "
        "table and the F5 text of earlier-protocol devices.",
        "protofix"};
    app.require_subcommand(1);
    app.footer(kFooter);
    app.set_version_flag("--version", std::string("protofix ") + PROTOFIX_VERSION);

    bool markdown = false;
    CLI::App* sections = app.add_subcommand(
        "sections", "List every section: name, accepted modes, record type and record size");
    sections->add_flag("--markdown", markdown,
                       "The section catalog in Markdown: routines, modes, record, fields and the "
                       "keys of each section's example table");
    std::string examples = "examples";
    sections->add_option("--examples", examples, "Where the examples are (for --markdown)")
        ->type_name("DIR");

    Options options;
    RawOptions raw;
    CLI::App* serialize = app.add_subcommand(
        "serialize", "Record (named-field view, or --hex bytes) or F5 text -> request envelope");
    serialize->add_option("SECTION", options.section, "Section name, in any case")->required();
    CLI::Option* record = serialize->add_option(
        "RECORD", options.input,
        "The record: its named-field view (JSON), or its raw bytes in hex (a text that starts "
        "with a hex digit)");
    record->type_name("RECORD.json");
    CLI::Option* serializeF5 = serialize
                                   ->add_option("--f5", options.f5,
                                                "Convert this F5 text (which holds the "
                                                "section's member) instead of a record")
                                   ->type_name("OLD.json");
    CLI::Option* serializeHex =
        serialize->add_flag("--hex", options.hex, "RECORD must be the record's raw bytes in hex");
    serialize->add_flag("--table", options.tableOnly,
                        "Print only the table, not the request envelope around it");
    record->excludes(serializeF5);
    serializeHex->excludes(serializeF5);
    const CommonOptions serializeCommon = AddCommonOptions(*serialize, options, raw);

    const auto addTableCommand = [&](const char* name, const char* description) {
        CLI::App* command = app.add_subcommand(name, description);
        command->add_option("SECTION", options.section, "Section name, in any case")->required();
        command
            ->add_option("TABLE", options.input,
                         "The device's table of the section (JSON), or the envelope that "
                         "serialize prints")
            ->type_name("TABLE.json");
        CLI::Option* f5 = command
                              ->add_option("--f5", options.f5,
                                           "Merge the table into this F5 text (which holds the "
                                           "section's member)")
                              ->type_name("OLD.json");
        CLI::Option* base =
            command
                ->add_option("--base", options.base,
                             "Start from this record instead of zero bytes (named-field view, or "
                             "raw bytes in hex); the Network record names its interfaces here")
                ->type_name("RECORD.json");
        CLI::Option* capacity =
            command
                ->add_option("--capacity", raw.capacity,
                             "Capacity of the F5 text buffer in bytes (default " +
                                 std::to_string(protofix::tool::kDefaultCapacity) +
                                 ", or more to hold OLD and its NUL)")
                ->type_name("BYTES");
        base->excludes(f5);
        capacity->needs(f5);
        return std::make_pair(command, f5);
    };
    auto [deserialize, deserializeF5] = addTableCommand(
        "deserialize",
        "Table -> record (named-field view, or --hex bytes), or merged into F5 text");
    CLI::Option* deserializeHex =
        deserialize->add_flag("--hex", options.hex, "Print the record's raw bytes in hex");
    deserialize->add_flag("--raw", options.raw,
                          "Show time sections as their seven numbers, not as their text");
    deserializeHex->excludes(deserializeF5);
    const CommonOptions deserializeCommon = AddCommonOptions(*deserialize, options, raw);
    CLI::App* roundtrip =
        addTableCommand("roundtrip",
                        "What of a table does not survive the section: the table into the record "
                        "(or the F5 text) and back, each loss as PATH: BEFORE -> AFTER")
            .first;
    const CommonOptions roundtripCommon = AddCommonOptions(*roundtrip, options, raw);

    CLI::App* view = app.add_subcommand(
        "view",
        "Print a record (named-field view or hex bytes) as its named-field view, or as "
        "hex with --hex; nothing is converted");
    view->add_option("SECTION", options.section, "Section name, in any case")->required();
    view->add_option("RECORD", options.input, "The record: named-field view or raw bytes in hex")
        ->type_name("RECORD.json");
    view->add_flag("--hex", options.hex, "Print the record's raw bytes in hex");
    view->add_flag("--raw", options.raw, "Show time sections as their seven numbers");
    view->add_option("--without", options.without, "Leave these top-level fields out of the view")
        ->delimiter(',')
        ->type_name("FIELD,...");
    AddMaxInput(*view, raw);

    // A first word that names no command would otherwise be reported as a missing command.
    if (argc > 1 && argv[1][0] != '-') {
        const std::vector<CLI::App*> commands = app.get_subcommands([](CLI::App*) { return true; });
        const std::string word = argv[1];
        const auto named =
            std::find_if(commands.begin(), commands.end(),
                         [&](const CLI::App* command) { return command->get_name() == word; });
        if (named == commands.end()) {
            return Fail(
                {protofix::tool::kBadInput,
                 "unknown command \"" + word +
                     "\"; the commands are sections, serialize, deserialize, roundtrip and view"});
        }
        Failure misplaced;
        if (MisplacedOption(app, **named, argc, argv, misplaced)) return Fail(misplaced);
    }

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        if (e.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) return app.exit(e);
        return Fail(
            {protofix::tool::kBadInput, UsageMessage(e) + " (protofix --help shows the usage)"});
    }

    if (Given(app, "--max-input")) {
        Failure failure;
        if (!ParseSize("--max-input", raw.maxInput, kLargestInput, options.maxInput, failure)) {
            return Fail(failure);
        }
    }

    if (*view) {
        Failure failure;
        const protofix::tool::Status status = protofix::tool::View(options, std::cout, failure);
        return status == protofix::tool::kConverted ? status : Fail(failure);
    }

    if (*sections) {
        if (markdown) {
            Failure failure;
            if (!protofix::tool::WriteCatalog(examples, std::cout, failure)) return Fail(failure);
        } else {
            protofix::tool::ListSections(std::cout);
        }
        return protofix::tool::kConverted;
    }

    const CommonOptions& common =
        *serialize ? serializeCommon : (*deserialize ? deserializeCommon : roundtripCommon);
    Failure failure;
    if (!ReadRawOptions(raw, common, options, failure)) return Fail(failure);
    if (Given(app, "--capacity")) {
        long long capacity = 0;
        if (!ParseInteger("--capacity", raw.capacity, 1, static_cast<long long>(options.maxInput),
                          capacity, failure)) {
            failure.message += " (the input limit; --max-input raises it)";
            return Fail(failure);
        }
        options.capacity = static_cast<int>(capacity);
    }

    const bool textMode = !options.f5.empty();
    const bool once =
        *serialize
            ? StandardInputOnce({textMode ? &options.f5 : &options.input, &options.current})
            : StandardInputOnce({&options.input, &options.f5, &options.base, &options.current});
    if (!once) {
        return Fail({protofix::tool::kBadInput,
                     "standard input can be read only once: give the other inputs as files "
                     "(a missing RECORD or TABLE means standard input)"});
    }

    protofix::tool::Warnings warnings;
    protofix::tool::Status status = protofix::tool::kConverted;
    if (*serialize) {
        status = protofix::tool::Serialize(options, std::cout, failure, warnings);
    } else if (*deserialize) {
        status = protofix::tool::Deserialize(options, std::cout, failure, warnings);
    } else {
        status = protofix::tool::Roundtrip(options, std::cout, failure, warnings);
    }
    std::cout.flush();
    for (const std::string& warning : warnings) {
        std::cerr << "protofix: warning: " << protofix::tool::OneLine(warning) << '\n';
    }
    if (status != protofix::tool::kConverted) return Fail(failure);
    if (raw.strict && !warnings.empty()) {
        return Fail(
            {protofix::tool::kRefused, "--strict: " + std::to_string(warnings.size()) +
                                           (warnings.size() == 1 ? " warning" : " warnings")});
    }
    return status;
}

}  // namespace

// Standard output written in full and closed: a full disk or a closed descriptor is an error
// of its own, so that the caller never takes lost output for a result. (A reader that leaves
// early ends the tool by SIGPIPE, as it ends any command of a pipeline.)
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

int main(int argc, char** argv) {
    int status = protofix::tool::kBadInput;
    try {
        status = Run(argc, argv);
    } catch (const std::exception& e) {
        // Out of memory, or a failure of the JSON library outside the conversion itself.
        std::cerr << "protofix: " << protofix::tool::OneLine(e.what()) << '\n';
        status = protofix::tool::kBadInput;
    }
    return OutputWritten() ? status : protofix::tool::kBadInput;
}
