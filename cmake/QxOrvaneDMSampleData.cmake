# Generates a source that embeds the JSON files of Testing/SampleData in QxTesting10, and sets
# `sampleDataSource` to it.
set(sampleFolder "${PROJECT_SOURCE_DIR}/Testing/SampleData")
set(generatedFolder "${PROJECT_BINARY_DIR}/generated/Testing/Detail")
set(sampleDataSource "${generatedFolder}/SampleData.cpp")

set(sampleFiles
  access/gearbox.json
  assemblies/bench.json
  assemblies/gearbox.json
  folders/gearbox.json
  folders/gears.json
  folders/prototypes.json
  folders/retired.json
  folders/seals.json
  folders/suppliers.json)
list(LENGTH sampleFiles sampleCount)
set(sampleTexts "")
foreach(sampleFile IN LISTS sampleFiles)
  file(READ "${sampleFolder}/${sampleFile}" json)
  string(APPEND sampleTexts "    {\"${sampleFile}\", R\"json(${json})json\"},\n")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${sampleFolder}/${sampleFile}")
endforeach()
configure_file("${PROJECT_SOURCE_DIR}/Testing/Detail/SampleData.h.in" "${generatedFolder}/SampleData.h" @ONLY)
configure_file("${PROJECT_SOURCE_DIR}/Testing/Detail/SampleData.cpp.in" "${sampleDataSource}" @ONLY)
