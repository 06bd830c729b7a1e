#include "library_description.hpp"

#include <iostream>

int main(int argc, char** argv)
{
    using namespace KX::test;
    if (argc != 2) {
        return 2;
    }
    const Library library = open(ProjectModel(QFile::decodeName(argv[1])));
    std::cout << describe(*library);
}
