// SPDX-License-Identifier: MIT
#pragma once

namespace modal {

// Lets the program's message catalogs be found: the folder "msgcatalog" beside the program joins the end of the
// framework's search path, behind what the user has set there. program: as the program was called, for a system that
// does not tell.
void add_catalog_folder(const char* program);

}  // namespace modal
