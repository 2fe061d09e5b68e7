// Writes the JSON Schema of lxconfig's JSON form to the file named on the command line; the
// build installs it beside the programs.

#include "formschema.h"

#include <fstream>
#include <iostream>

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::cerr << "usage: lumarex-formschema OUTPUT.json\n";
        return 2;
    }
    std::ofstream file(argv[1], std::ios::binary | std::ios::trunc);
    file << lxconfig::formSchema().dump(2) << '\n';
    file.close();
    if (!file) {
        std::cerr << "lumarex-formschema: cannot write " << argv[1] << '\n';
        return 1;
    }
    return 0;
}
