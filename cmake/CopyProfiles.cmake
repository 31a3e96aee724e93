# cmake -DFROM=<profiles> -DTO=<folder> -P CopyProfiles.cmake: lays the ready-made profiles into a folder of their own.
file(REMOVE_RECURSE "${TO}")
file(GLOB profiles "${FROM}/*.prf")
file(COPY ${profiles} DESTINATION "${TO}")
