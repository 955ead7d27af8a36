// Where the file of a picture's pixels goes, and how it is called.

#include "raster/FicheroTemporal.h"

#include "raster/Imagenes.h"
#include "support/Temporales.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cstdlib>

namespace {

using testing::HasSubstr;
using Vertiz::CreaFicheroTemporal;

// The environment's folders for temporary files are as a test wants them; CarpetaTemporal puts them back.
class FicheroTemporal : public testing::Test {
  protected:
    FicheroTemporal() {
        for (const char* nombre : {"TEMP", "TMP", "TMPDIR"})
            unsetenv(nombre);
    }
    std::filesystem::path Carpeta(const char* nombre) const {
        const auto ruta = m_Carpeta / nombre;
        create_directory(ruta);
        return ruta;
    }
    // The folder of a new file, which is gone again afterwards.
    std::string CarpetaDe(const CString& fuente) {
        CString ruta;
        if (CreaFicheroTemporal(fuente, ruta) == nullptr) return "none";
        std::filesystem::remove(ruta.Utf8());
        return std::filesystem::path(ruta.Utf8()).parent_path().filename().string();
    }
    CString Fuente() const { return CString((Carpeta("origen") / "foto.bmp").string().c_str()); }

    CarpetaTemporal m_Carpeta;
};

TEST_F(FicheroTemporal, GoesToTEMPThenToTMPThenToTheSourcesFolder) {
    EXPECT_EQ(CarpetaDe(Fuente()), "origen");
    setenv("TMP", Carpeta("segunda").c_str(), 1);
    EXPECT_EQ(CarpetaDe(Fuente()), "segunda");
    setenv("TEMP", Carpeta("primera ñ").c_str(), 1);
    EXPECT_EQ(CarpetaDe(Fuente()), "primera ñ");
    setenv("TEMP", "", 1);
    EXPECT_EQ(CarpetaDe(Fuente()), "segunda");
}

TEST_F(FicheroTemporal, OfASourceWithoutFolderGoesToTheSystems) {
    EXPECT_EQ(CarpetaDe(L"foto.bmp"), "tmp");
    EXPECT_EQ(CarpetaDe(L""), "tmp");
}

TEST_F(FicheroTemporal, AVariableTooLongToBeAFolderDoesntCount) {
    setenv("TEMP", std::string(1030, 'x').c_str(), 1);
    EXPECT_EQ(CarpetaDe(Fuente()), "origen");
}

TEST_F(FicheroTemporal, FailsWhenTheFolderIsNotThere) {
    setenv("TEMP", (m_Carpeta / "no está").c_str(), 1);
    EXPECT_EQ(CarpetaDe(Fuente()), "none");
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
}

TEST_F(FicheroTemporal, IsNamedByTheClockAndACounterAndNeverTakesAnotherOne) {
    setenv("TEMP", Carpeta("t").c_str(), 1);
    std::vector<std::unique_ptr<CFile>> ficheros;
    std::vector<std::string> rutas;
    for (int i = 0; i < 50; ++i) {
        CString ruta;
        ficheros.push_back(CreaFicheroTemporal(L"", ruta));
        ASSERT_NE(ficheros.back(), nullptr);
        ASSERT_TRUE(ficheros.back()->Write("x", 1));
        rutas.push_back(ruta.Utf8());
        EXPECT_THAT(rutas.back(), testing::MatchesRegex(".*/Imagen[0-9]{12,}\\.tmp"));
    }
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 50u);
    for (const auto& ruta : rutas)
        EXPECT_EQ(std::filesystem::file_size(ruta), 1u);
}

TEST_F(FicheroTemporal, IsItsOwnersAlone) {
    setenv("TEMP", Carpeta("t").c_str(), 1);
    CString ruta;
    const auto fichero = CreaFicheroTemporal(L"", ruta);
    struct stat estado {};
    ASSERT_EQ(stat(ruta.Utf8().c_str(), &estado), 0);
    EXPECT_EQ(estado.st_mode & 0777, 0600u);
}

TEST_F(FicheroTemporal, OfACutPictureLiesBesideItsSourceToo) {
    const auto imagen = imagenes::Aleatoria<Vertiz::CBmp>(6, 4, 24, 1);
    imagen->SetNombre(Fuente());
    ASSERT_EQ(imagen->Recorta(0, 0, 2, 3, nullptr), 1);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(Carpeta("origen")), {}), 1);
}

}  // namespace
