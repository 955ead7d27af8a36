#include "support/Temporales.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace {

TEST(CarpetaTemporal, IsGoneWithAllInIt) {
    std::filesystem::path ruta;
    {
        const CarpetaTemporal carpeta;
        ruta = carpeta.Ruta();
        carpeta.Escribe("dentro/año nuevo.txt", "x");
        EXPECT_TRUE(std::filesystem::exists(ruta));
    }
    EXPECT_FALSE(std::filesystem::exists(ruta));
}

TEST(CarpetaTemporal, HasWhatBreaksCarelessPathsInItsName) {
    const CarpetaTemporal carpeta;
    EXPECT_NE(carpeta.Ruta().string().find("ñ"), std::string::npos);
    EXPECT_NE(carpeta.Ruta().string().find(' '), std::string::npos);
}

TEST(CarpetaTemporal, IsTheTemporaryFolderWhileItLives) {
    const std::filesystem::path antes = std::filesystem::temp_directory_path();
    {
        const CarpetaTemporal carpeta;
        EXPECT_EQ(std::filesystem::temp_directory_path(), carpeta.Ruta());
        EXPECT_EQ(std::getenv("TMP"), carpeta.Ruta().string());
    }
    EXPECT_EQ(std::filesystem::temp_directory_path(), antes);
}

TEST(CarpetaTemporal, CountsFilesInAllFolders) {
    const CarpetaTemporal carpeta;
    EXPECT_EQ(carpeta.CuentaFicheros(), 0u);
    carpeta.Escribe("a", "");
    carpeta.Escribe("b/c", "");
    EXPECT_EQ(carpeta.CuentaFicheros(), 2u);
}

TEST(CarpetaTemporal, CountsItsOpenFilesAndNoOthers) {
    const CarpetaTemporal carpeta;
    const std::ifstream ajeno("/dev/null");
    EXPECT_EQ(carpeta.CuentaAbiertos(), 0u);
    const std::ifstream propio(carpeta.Escribe("a/b", "x"));
    EXPECT_EQ(carpeta.CuentaAbiertos(), 1u);
    std::filesystem::remove(carpeta / "a/b");
    EXPECT_EQ(carpeta.CuentaAbiertos(), 1u);
}

TEST(CuentaDescriptores, SeesAnOpenFile) {
    const std::size_t antes = CuentaDescriptores();
    const std::ifstream abierto("/dev/null");
    EXPECT_EQ(CuentaDescriptores(), antes + 1);
}

}  // namespace
