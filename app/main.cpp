// The command: evaluates scenes with no host and no licence.

#include "app/commands.h"
#include "app/options.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstring>
#include <iostream>
#include <stdexcept>
#include <unistd.h>

namespace {

using namespace vesk::app;

/// As written by the user; checked and split once parsing is through.
struct RawRun {
    RunOptions options;
    std::vector<std::string> exports, sets, limits;
    std::string frames, progress;
};

void declareRun(CLI::App& run, RawRun& raw) {
    run.add_option("FILE", raw.options.files,
                   "scenes (.ma), scripts (.mel) and geometry (.obj, .ply), in this order")
        ->required();
    run.add_option("--get", raw.options.gets, "print a plug's value as JSON, one line a plug")
        ->type_name("PLUG")
        ->allow_extra_args(false);
    run.add_option("--export", raw.exports,
                   "write geometry or arrays: .obj .ply .npy .json .csv .ma by extension")
        ->type_name("FILE=PLUG")
        ->allow_extra_args(false);
    run.add_option("--frames", raw.frames,
                   "evaluate per frame; '#' in an export's name becomes the frame number")
        ->type_name("1-24x2,30");
    run.add_option("--set", raw.sets, "override a plug before evaluation")
        ->type_name("PLUG=VALUE")
        ->allow_extra_args(false);
    run.add_option("--mel-limit", raw.limits,
                   "set a limit of scripts: recursion, nesting, array, string, deferred, files or steps")
        ->type_name("NAME=N")
        ->allow_extra_args(false);
    run.add_option("--threads", raw.options.threads,
                   "threads that one node may use; the results are the same for any number")
        ->type_name("N")
        ->check(CLI::PositiveNumber);
    run.add_flag("--time", raw.options.time, "report what each node type cost");
    run.add_flag("--strict", raw.options.strict, "any error logged during evaluation fails the run");
    run.add_flag("--json", raw.options.json, "make data and talk machine-readable");
    run.add_option("--progress", raw.progress, "dialect of progress lines")
        ->check(CLI::IsMember({"percent", "alf", "openjd", "json", "none"}));
    run.add_option("--plugin", raw.options.plugin,
                   "the plug-in to load, in place of the one beside the command");
    run.add_flag("--no-plugin", raw.options.noPlugin, "load no plug-in");
    run.add_option("--user-dir", raw.options.userDir, "keep the session's user folders here");
    run.add_flag("--interactive-session", raw.options.interactiveSession,
                 "behave as a session with a user interface does, without a window");
}

RunOptions finished(RawRun raw) {
    RunOptions options = std::move(raw.options);
    for (const auto& text : raw.exports)
        options.exports.push_back(parseAssignment("--export", text));
    for (const auto& text : raw.sets)
        options.sets.push_back(parseAssignment("--set", text));
    for (const auto& text : raw.limits)
        options.limits.push_back(parseLimit(text));
    if (!raw.frames.empty()) options.frames = parseFrames(raw.frames);
    options.progress = raw.progress == "alf"      ? ProgressDialect::Alf
                       : raw.progress == "openjd" ? ProgressDialect::OpenJobDescription
                       : raw.progress == "json"   ? ProgressDialect::Json
                       : raw.progress == "none"   ? ProgressDialect::None
                       : !raw.progress.empty()    ? ProgressDialect::Percent
                       : isatty(STDERR_FILENO)    ? ProgressDialect::Bar
                                                  : ProgressDialect::Percent;
    return options;
}

int dispatch(int argc, char** argv) {
    CLI::App app("Evaluates procedural scenes with no host and no licence.", "vesk");
    app.set_version_flag("--version", versionText());
    app.require_subcommand(1);
    RawRun raw;
    CLI::App* run = app.add_subcommand("run", "open scenes and scripts, evaluate, write results");
    declareRun(*run, raw);
    NodesOptions listing;
    CLI::App* nodes = app.add_subcommand("nodes", "list the plug-in's node types, or the attributes of one");
    nodes->add_option("TYPE", listing.type, "a node type");
    nodes->add_option("--plugin", listing.plugin,
                      "the plug-in to load, in place of the one beside the command");
    nodes->add_flag("--json", listing.json, "machine-readable");
    IconsOptions checking;
    CLI::App* icons = app.add_subcommand("icons", "check an icons file, or draw its sheet");
    icons->add_option("FILE", checking.file, "an icons file, such as icons.cfg")->required();
    icons->add_option("--svg", checking.svg, "write all icons with their ordinals as a picture")
        ->type_name("OUT");
    try {
        app.parse(argc, argv);
        if (nodes->parsed()) return listNodes(listing);
        if (icons->parsed()) return checkIcons(checking);
        return runScenes(finished(std::move(raw)));
    } catch (const CLI::ParseError& fault) {
        return app.exit(fault, std::cout, std::cerr) == 0 ? kAllDone : kBadUsage;
    } catch (const std::invalid_argument& fault) {
        std::fprintf(stderr, "vesk: %s\n", fault.what());
        return kBadUsage;
    }
}

} // namespace

int main(int argc, char** argv) {
    try {
        return dispatch(argc, argv);
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "vesk: %s\n", fault.what());
        return kFailed;
    }
}
