#include "app/AppOptions.h"

#include "content/VendorID.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <sstream>

namespace nivor {

AppOptionsResult parseAppOptions(const std::vector<std::string>& arguments,
                                 const AppOptions& defaults, const std::string& version)
{
    AppOptions options = defaults;
    CLI::App app("NIVOR File Transfer: gets the pictures and films off a USB camera.",
                 "nivor-file-transfer");
    app.set_version_flag("--version", "NIVOR File Transfer " + version);

    std::string vendorID;
    app.add_option("--vendor-id", vendorID, "Take the cameras of one maker only, such as 0x04b0")
        ->type_name("ID")
        ->check([](const std::string& text) {
            return parseVendorID(text) ? std::string()
                                       : "a vendor ID is \"any\" or like 0x04b0, not " + text;
        });
    std::string folder;
    const CLI::Option* simulate =
        app.add_option("--simulate", folder,
                       "Use a simulated camera; its card is FOLDER, or a built-in one")
            ->type_name("[=FOLDER]")
            ->expected(0, 1);
    app.add_flag("--simulate-writable", options.isSimulationWritable,
                 "Let deletions reach the files in FOLDER");
    app.add_option("--simulate-pace", options.simulationPace, "Pace of the simulated camera, MB/s")
        ->type_name("MB/s")
        ->check(CLI::NonNegativeNumber);
    app.add_option("--log-directory", options.logDirectory, "Where the log is written")
        ->type_name("FOLDER");
    app.add_option("--window-picture", options.windowPicture,
                   "Save a picture of the window once the list is there, and end")
        ->type_name("FILE");

    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    try {
        app.parse(reversed);
    } catch (const CLI::ParseError& error) {
        std::ostringstream out;
        const int exitCode = app.exit(error, out, out);
        return {std::nullopt, out.str(), exitCode == 0 ? 0 : 2};
    }
    if (!vendorID.empty())
        options.vendorID = *parseVendorID(vendorID);
    options.isSimulation = simulate->count() > 0;
    options.simulationFolder = folder;
    return {options};
}

}  // namespace nivor
