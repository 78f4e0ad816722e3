namespace rowvane {}
