# What a sensor can do and how it counts, with the product's own files.
add_core_test(tst_sensordefines catalogue)
add_core_test(tst_sensordpi device fakehidusb)
target_compile_definitions(tst_sensordpi PRIVATE PRODUCT_FOLDER="${MORLEN_PRODUCT_DIR}")
add_dependencies(tst_sensordpi catalogue-data)
