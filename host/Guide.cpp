#include "host/Guide.h"

namespace host {

namespace {

Guide credentials()
{
    return {"credentials",
            "Who signs in, and how passwords stay unseen",
            {
                {"",
                 "Passwords never stand on the command line, which every user of the machine can see. They come from "
                 "the environment, see pvwapi help environment, or with --credentials from a file alone."},
                {"",
                 "The lines of the file are user=NAME, password=WORD, token=TEXT, isp=ID and cred=TEXT. Lines that "
                 "begin with # are comments. A file to which anybody but its owner has access is refused; a pipe is "
                 "taken, and "
                 "- is standard input. A password that is nowhere is asked for on a terminal."},
                {"",
                 "A command signs in and out by itself, unless it is given the credential of a session: then it "
                 "works in that session and leaves it open. login prints such a credential, or keeps it in a file "
                 "with --save; logout ends its session."},
            }};
}

Guide output()
{
    return {"output",
            "Tables, JSON, widths and colours",
            {
                {"",
                 "Results go to standard output, which stays empty when a command fails. The reason is one line on "
                 "standard error."},
                {"--format table",
                 "For people, the default. On a terminal, a table is made as wide as the terminal by "
                 "shortening its columns; the first one is shortened last. Without a terminal nothing "
                 "is shortened, unless COLUMNS says how wide a line may be."},
                {"--format json",
                 "For programs: the library's records with all their members, numbers for roles and "
                 "kinds. What chooses columns, headers and colours does not change it."},
                {"--columns",
                 "The columns of a table, by the names of the record's members, in the order in which they "
                 "are to stand. The help of a command names those that it has."},
                {"--no-header", "Leaves the names of the columns out."},
                {"--color",
                 "Bold headings. auto shows them on a terminal only, and never where NO_COLOR is set or TERM "
                 "is dumb."},
            }};
}

Guide statuses()
{
    return {"statuses",
            "What the exit status says",
            {
                {"0", "Done."},
                {"1", "Refused: the service or the library said no."},
                {"2", "The command line, a file or this machine is at fault, or a question was not answered with yes."},
                {"3", "No connection: no whole reply came. The line names the cause."},
                {"4", "Stopped by --timeout or by Ctrl-C."},
            }};
}

Guide environment()
{
    return {"environment",
            "The variables that count",
            {
                {"PVWAPI_USER", "The user's name."},
                {"PVWAPI_PASSWORD", "The password."},
                {"PVWAPI_TOKEN", "A token, taken in the place of the password when it is set."},
                {"PVWAPI_ISP", "The identity provider, if it is not the service's own."},
                {"PVWAPI_CRED", "The credential of a session that stands already."},
                {"PVWAPI_BASE_URL", "The service's operation URL; --base-url wins over it."},
                {"PVWAPI_PROFILE", "The profile; --profile wins over it."},
                {"COLUMNS", "How many columns a line may take."},
                {"NO_COLOR", "Not empty: nothing is bold, unless --color always is given."},
                {"TERM", "dumb: the same."},
            }};
}

Guide profiles()
{
    return {
        "profiles",
        "Sets of settings in the configuration file",
        {
            {"",
             "The configuration file is pvwapi/config in $XDG_CONFIG_HOME or ~/.config, on Windows "
             "pvwapi\\config in %APPDATA%, or the one that --config names. A section such as [work] is a "
             "profile, chosen with --profile work or PVWAPI_PROFILE; lines before the first section hold for "
             "every profile, and without one too."},
            {"",
             "A line is key = \"value\". The keys are the options of the same name: base-url, credentials, "
             "format, color and timeout. Any other is refused; a password has no place there. A file of credentials is "
             "looked for beside the configuration file unless its path is absolute."},
            {"",
             "What the command line says wins over the environment, the environment over the profile, and the "
             "profile over what holds without any of them."},
        }};
}

}  // namespace

std::vector<Guide> guides()
{
    return {credentials(), output(), statuses(), environment(), profiles()};
}

}  // namespace host
