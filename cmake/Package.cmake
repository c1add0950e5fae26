# Package
