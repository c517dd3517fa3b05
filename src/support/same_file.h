// same_file.h - the check that keeps a program from writing its output over
// one of its inputs (given by the same name, another path, a symbolic link
// or a hard link): the output would destroy the input it is made from.
#pragma once

#include <string>
#include <vector>

namespace sciray {

// Ends the run with "PROGRAM: output file OUTPUT is the same file as input
// INPUT" (the names as given) when `output` is the same regular file as
// one of `inputs`; else does nothing. Files that cannot be looked at pass.
void refuse_output_over_input(const std::string& program, const std::string& output,
                              const std::vector<std::string>& inputs);

}  // namespace sciray
