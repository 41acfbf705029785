// placeholder until the first source
