#error "the header of another library"
